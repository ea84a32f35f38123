#pragma once

#include <netlink/msg.h>
#include <netlink/socket.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

// The door to netlink, on which the doors to links, addresses, routes and to the drivers' settings
// stand.
namespace tavrolinux {

// A request that is put together, and its attributes.
class Message {
  public:
    // `type` and `flags` are those of the message's header. The whole has room in a page; a longer
    // one needs to be told how many bytes come behind the message's header.
    Message(int type, int flags, std::size_t room = 0);

    // The protocol's own header behind the message's header; attributes follow it.
    void Append(const void* header, std::size_t size);
    template <class Header>
    void Append(const Header& header) {
        Append(&header, sizeof header);
    }

    void Put(int attribute, std::span<const std::uint8_t> bytes);
    void PutText(int attribute, const std::string& text);  // with the final zero
    void PutNumber8(int attribute, std::uint8_t number);
    void PutNumber32(int attribute, std::uint32_t number);
    void PutFlag(int attribute);

    // Everything that `put` puts into the message stands within the attribute.
    void Nest(int attribute, const std::function<void()>& put);

    nl_msg* Get() const { return message_.get(); }

  private:
    std::unique_ptr<nl_msg, decltype(&nlmsg_free)> message_;
};

// A connection to the kernel by one protocol of netlink.
class Socket {
  public:
    // `protocol` is NETLINK_ROUTE or NETLINK_GENERIC. Throws SystemFailure.
    explicit Socket(int protocol);

    // Sends the request and hands `onAnswer` each message of the answer, until the kernel is done.
    // A listing that was disturbed is asked for anew: `onAnswer` then gets messages again, behind
    // one call of `restart`. Throws SystemFailure with `action` and the kernel's own reason; EAGAIN
    // for a listing that was disturbed time and again. One request that was not carried through
    // leaves the connection usable for the next.
    void Request(const Message& message, const std::string& action,
                 const std::function<void(const nlmsghdr&)>& onAnswer = {},
                 const std::function<void()>& restart = {});

    nl_sock* Get() const { return socket_.get(); }

  private:
    using Handle = std::unique_ptr<nl_sock, decltype(&nl_socket_free)>;
    static Handle Connected(int protocol);

    int protocol_;
    Handle socket_;
    bool isInStep_ = true;  // with what the kernel answers next
};

// The bytes, the text (up to its zero) and the number of an attribute. A number that has another
// size than the attribute is 0.
std::span<const std::uint8_t> BytesOf(const nlattr& attribute);
std::string TextOf(const nlattr& attribute);
std::uint64_t NumberOf(const nlattr& attribute);

// Calls `visit` with the type of every attribute among the bytes and the attribute itself; stops at
// one that does not fit.
void ForEachAttribute(std::span<const std::uint8_t> attributes,
                      const std::function<void(int, const nlattr&)>& visit);

// The protocol's header of a message; what a shorter message lacks is 0.
template <class Header>
Header HeaderOf(const nlmsghdr& message) {
    Header header{};
    std::memcpy(
        &header, nlmsg_data(&message),
        std::min<std::size_t>(sizeof header, static_cast<std::size_t>(nlmsg_datalen(&message))));
    return header;
}

// The attributes of a message behind a protocol's header of `headerSize` bytes.
std::span<const std::uint8_t> AttributesOf(const nlmsghdr& message, std::size_t headerSize);

}  // namespace tavrolinux
