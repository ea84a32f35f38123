#include "linux/netlink/socket.h"

#include <linux/netlink.h>
#include <netlink/attr.h>
#include <netlink/netlink.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <new>

#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

// A listing is asked for again when something changed while it was made.
constexpr int Attempts = 5;

struct Exchange {
    const std::function<void(const nlmsghdr&)>* onAnswer = nullptr;
    std::exception_ptr thrown;
    int error = 0;
    std::string reason;
    bool isDone = false;
    bool isDisturbed = false;
};

// The callbacks of the C library: what is thrown must not pass through it.
int TakeAnswer(nl_msg* message, void* data) {
    Exchange& exchange = *static_cast<Exchange*>(data);
    if (exchange.thrown == nullptr && *exchange.onAnswer) {
        try {
            (*exchange.onAnswer)(*nlmsg_hdr(message));
        } catch (...) {
            exchange.thrown = std::current_exception();
        }
    }
    return NL_OK;
}

int Finish(nl_msg* /*message*/, void* data) {
    static_cast<Exchange*>(data)->isDone = true;
    return NL_STOP;
}

std::string ReasonAmong(std::span<const std::uint8_t> attributes) {
    std::string reason;
    ForEachAttribute(attributes, [&reason](int type, const nlattr& attribute) {
        if (type == NLMSGERR_ATTR_MSG) {
            reason = TextOf(attribute);
        }
    });
    return reason;
}

// The end of a listing, which says whether it failed.
int FinishListing(nl_msg* message, void* data) {
    Exchange& exchange = *static_cast<Exchange*>(data);
    const nlmsghdr& header = *nlmsg_hdr(message);
    const int error = HeaderOf<int>(header);
    if (error < 0) {
        exchange.error = -error;
        try {
            if ((header.nlmsg_flags & NLM_F_ACK_TLVS) != 0) {
                exchange.reason = ReasonAmong(AttributesOf(header, sizeof error));
            }
        } catch (...) {
            exchange.thrown = std::current_exception();
        }
    }
    return Finish(message, data);
}

int NoteDisturbance(nl_msg* /*message*/, void* data) {
    static_cast<Exchange*>(data)->isDisturbed = true;
    return NL_OK;
}

// Behind the error the kernel may say in words what was wrong.
std::string ReasonBehind(const nlmsgerr& error) {
    const auto* const header = reinterpret_cast<const nlmsghdr*>(&error) - 1;
    if ((header->nlmsg_flags & NLM_F_ACK_TLVS) == 0) {
        return {};
    }
    std::size_t behind = sizeof(nlmsgerr);
    if ((header->nlmsg_flags & NLM_F_CAPPED) == 0) {
        behind += NLMSG_ALIGN(error.msg.nlmsg_len) - sizeof(nlmsghdr);
    }
    return ReasonAmong(AttributesOf(*header, behind));
}

int TakeError(sockaddr_nl* /*address*/, nlmsgerr* error, void* data) {
    Exchange& exchange = *static_cast<Exchange*>(data);
    exchange.error = -error->error;
    exchange.isDone = true;
    try {
        exchange.reason = ReasonBehind(*error);
    } catch (...) {
        exchange.thrown = std::current_exception();
    }
    return NL_STOP;
}

// The C library's own errors, as those of the system.
int SystemErrorOf(int libraryError) {
    switch (libraryError < 0 ? -libraryError : libraryError) {
        case NLE_NOMEM:
            return ENOMEM;
        case NLE_PERM:
            return EPERM;
        case NLE_OPNOTSUPP:
        case NLE_PROTO_MISMATCH:
            return EOPNOTSUPP;
        case NLE_NODEV:
        case NLE_OBJ_NOTFOUND:
            return ENODEV;
        default:
            return EIO;
    }
}

void Check(int result, const char* action) {
    if (result < 0) {
        throw SystemFailure(SystemErrorOf(result), action);
    }
}

nl_msg* NewMessage(int type, int flags, std::size_t room) {
    const auto page = static_cast<std::size_t>(getpagesize());
    nl_msg* const message = nlmsg_alloc_size(std::max(page, NLMSG_HDRLEN + room));
    if (message == nullptr) {
        throw std::bad_alloc();
    }
    nlmsg_hdr(message)->nlmsg_type = static_cast<std::uint16_t>(type);
    nlmsg_hdr(message)->nlmsg_flags = static_cast<std::uint16_t>(flags);
    return message;
}

nl_sock* NewSocket() {
    nl_sock* const socket = nl_socket_alloc();
    if (socket == nullptr) {
        throw std::bad_alloc();
    }
    return socket;
}

void CheckSpace(int result) {
    if (result < 0) {
        throw std::bad_alloc();
    }
}

void SwitchOn(const nl_sock* socket, int option) {
    // An older kernel lacks them, and then says and filters less.
    const int on = 1;
    static_cast<void>(setsockopt(nl_socket_get_fd(socket), SOL_NETLINK, option, &on, sizeof on));
}

}  // namespace

Message::Message(int type, int flags, std::size_t room)
    : message_(NewMessage(type, flags, room), &nlmsg_free) {}

void Message::Append(const void* header, std::size_t size) {
    // The library copies out of it.
    CheckSpace(nlmsg_append(Get(), const_cast<void*>(header), size, NLMSG_ALIGNTO));
}

void Message::Put(int attribute, std::span<const std::uint8_t> bytes) {
    CheckSpace(nla_put(Get(), attribute, static_cast<int>(bytes.size()), bytes.data()));
}

void Message::PutText(int attribute, const std::string& text) {
    CheckSpace(nla_put_string(Get(), attribute, text.c_str()));
}

void Message::PutNumber8(int attribute, std::uint8_t number) {
    CheckSpace(nla_put_u8(Get(), attribute, number));
}

void Message::PutNumber32(int attribute, std::uint32_t number) {
    CheckSpace(nla_put_u32(Get(), attribute, number));
}

void Message::PutFlag(int attribute) {
    CheckSpace(nla_put_flag(Get(), attribute));
}

void Message::Nest(int attribute, const std::function<void()>& put) {
    nlattr* const start = nla_nest_start(Get(), attribute);
    if (start == nullptr) {
        throw std::bad_alloc();
    }
    put();
    nla_nest_end(Get(), start);
}

Socket::Handle Socket::Connected(int protocol) {
    Handle socket(NewSocket(), &nl_socket_free);
    Check(nl_connect(socket.get(), protocol), "asking the kernel");
    SwitchOn(socket.get(), NETLINK_EXT_ACK);
    SwitchOn(socket.get(), NETLINK_CAP_ACK);
    SwitchOn(socket.get(), NETLINK_GET_STRICT_CHK);
    return socket;
}

Socket::Socket(int protocol) : protocol_(protocol), socket_(Connected(protocol)) {}

void Socket::Request(const Message& message, const std::string& action,
                     const std::function<void(const nlmsghdr&)>& onAnswer,
                     const std::function<void()>& restart) {
    const std::unique_ptr<nl_cb, decltype(&nl_cb_put)> callbacks(nl_cb_alloc(NL_CB_DEFAULT),
                                                                 &nl_cb_put);
    if (!callbacks) {
        throw std::bad_alloc();
    }
    for (int attempt = 1;; ++attempt) {
        // What is sent but not answered, or the other way round, would be taken for that of the
        // next request.
        if (!isInStep_) {
            socket_ = Connected(protocol_);
            isInStep_ = true;
        }
        Exchange exchange{&onAnswer, {}, 0, {}, false, false};
        nl_cb_set(callbacks.get(), NL_CB_VALID, NL_CB_CUSTOM, &TakeAnswer, &exchange);
        nl_cb_set(callbacks.get(), NL_CB_FINISH, NL_CB_CUSTOM, &FinishListing, &exchange);
        nl_cb_set(callbacks.get(), NL_CB_ACK, NL_CB_CUSTOM, &Finish, &exchange);
        nl_cb_set(callbacks.get(), NL_CB_DUMP_INTR, NL_CB_CUSTOM, &NoteDisturbance, &exchange);
        nl_cb_err(callbacks.get(), NL_CB_CUSTOM, &TakeError, &exchange);
        nlmsg_hdr(message.Get())->nlmsg_seq = NL_AUTO_SEQ;
        int result = nl_send_auto(Get(), message.Get());
        while (result >= 0 && !exchange.isDone) {
            result = nl_recvmsgs(Get(), callbacks.get());
        }
        isInStep_ = result >= 0;
        if (exchange.thrown) {
            std::rethrow_exception(exchange.thrown);
        }
        if (exchange.error != 0) {
            throw SystemFailure(exchange.error, action, NetworkRight, exchange.reason);
        }
        if (result < 0 && !exchange.isDone) {
            throw SystemFailure(SystemErrorOf(result), action);
        }
        if (!exchange.isDisturbed) {
            return;
        }
        if (attempt == Attempts) {
            throw SystemFailure(EAGAIN, action);
        }
        if (restart) {
            restart();
        }
    }
}

std::span<const std::uint8_t> BytesOf(const nlattr& attribute) {
    return {static_cast<const std::uint8_t*>(nla_data(&attribute)),
            static_cast<std::size_t>(nla_len(&attribute))};
}

std::string TextOf(const nlattr& attribute) {
    const auto bytes = BytesOf(attribute);
    std::string text(bytes.begin(), bytes.end());
    if (const auto end = text.find('\0'); end != std::string::npos) {
        text.resize(end);
    }
    return text;
}

std::uint64_t NumberOf(const nlattr& attribute) {
    const auto bytes = BytesOf(attribute);
    const auto numberAs = [&bytes]<class Number>(Number number) {
        std::memcpy(&number, bytes.data(), sizeof number);
        return static_cast<std::uint64_t>(number);
    };
    switch (bytes.size()) {
        case sizeof(std::uint8_t):
            return numberAs(std::uint8_t{});
        case sizeof(std::uint16_t):
            return numberAs(std::uint16_t{});
        case sizeof(std::uint32_t):
            return numberAs(std::uint32_t{});
        case sizeof(std::uint64_t):
            return numberAs(std::uint64_t{});
        default:
            return 0;
    }
}

void ForEachAttribute(std::span<const std::uint8_t> attributes,
                      const std::function<void(int, const nlattr&)>& visit) {
    const auto* attribute = reinterpret_cast<const nlattr*>(attributes.data());
    int left = static_cast<int>(attributes.size());
    while (nla_ok(attribute, left) != 0) {
        visit(nla_type(attribute), *attribute);
        attribute = nla_next(attribute, &left);
    }
}

std::span<const std::uint8_t> AttributesOf(const nlmsghdr& message, std::size_t headerSize) {
    const std::size_t before = NLMSG_ALIGN(headerSize);
    const std::size_t size = message.nlmsg_len - NLMSG_HDRLEN;
    const auto* const data = static_cast<const std::uint8_t*>(nlmsg_data(&message));
    if (message.nlmsg_len < NLMSG_HDRLEN || size <= before) {
        return {};
    }
    return {data + before, size - before};
}

}  // namespace tavrolinux
