#include "linux/netlink/ethtool.h"

#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/netlink.h>

#include <cerrno>

#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

// The generic protocol's header in front of the attributes.
Message GenericRequest(int family, std::uint8_t command, std::uint8_t version) {
    Message message(family, 0);
    message.Append(genlmsghdr{command, version, 0});
    return message;
}

int FamilyNumber(Socket& socket) {
    constexpr std::uint8_t ControllerVersion = 2;
    Message message = GenericRequest(GENL_ID_CTRL, CTRL_CMD_GETFAMILY, ControllerVersion);
    message.PutText(CTRL_ATTR_FAMILY_NAME, ETHTOOL_GENL_NAME);
    int number = 0;
    try {
        socket.Request(message, "looking for the kernel's settings of devices",
                       [&number](const nlmsghdr& answer) {
                           ForEachAttribute(AttributesOf(answer, GENL_HDRLEN),
                                            [&number](int type, const nlattr& attribute) {
                                                if (type == CTRL_ATTR_FAMILY_ID) {
                                                    number = static_cast<int>(NumberOf(attribute));
                                                }
                                            });
                       });
    } catch (const SystemFailure& failure) {
        if (failure.Error() != ENOENT) {
            throw;
        }
    }
    return number;
}

std::string ActionOn(const char* verb, const EthtoolSubject& subject, const Link& link) {
    return std::string(verb) + ' ' + subject.name + " of " + link.name;
}

}  // namespace

bool IsLacking(int error, const Link& link) {
    switch (error) {
        case EOPNOTSUPP:
        case ENOSYS:
        case EINVAL:
        // Of a port that has no transceiver, or none before the interface is up.
        case ENODEV:
            return true;
        // Of a device that tells nothing before the interface is up.
        case EBUSY:
        case EAGAIN:
        case ENETDOWN:
            return !link.isUp;
        default:
            return false;
    }
}

Ethtool::Ethtool() : socket_(NETLINK_GENERIC), family_(FamilyNumber(socket_)) {}

Message Ethtool::NewRequest(std::uint8_t command, int header, const Link& link,
                            std::uint32_t flags) {
    Message message = GenericRequest(family_, command, ETHTOOL_GENL_VERSION);
    message.Nest(header | NLA_F_NESTED, [&] {
        message.PutNumber32(ETHTOOL_A_HEADER_DEV_INDEX, static_cast<std::uint32_t>(link.index));
        if (flags != 0) {
            message.PutNumber32(ETHTOOL_A_HEADER_FLAGS, flags);
        }
    });
    return message;
}

bool Ethtool::Read(const EthtoolSubject& subject, const Link& link,
                   const std::function<void(int, const nlattr&)>& take, std::uint32_t flags,
                   const std::function<void(Message&)>& put) {
    if (family_ == 0) {
        return false;
    }
    Message message = NewRequest(subject.read, subject.header, link, flags);
    if (put) {
        put(message);
    }
    try {
        socket_.Request(message, ActionOn("reading", subject, link),
                        [&take](const nlmsghdr& answer) {
                            ForEachAttribute(AttributesOf(answer, GENL_HDRLEN), take);
                        });
    } catch (const SystemFailure& failure) {
        if (!IsLacking(failure.Error(), link)) {
            throw;
        }
        return false;
    }
    return true;
}

void Ethtool::Write(const EthtoolSubject& subject, const Link& link,
                    const std::function<void(Message&)>& put) {
    const std::string action = ActionOn("setting", subject, link);
    if (family_ == 0) {
        throw SystemFailure(EOPNOTSUPP, action);
    }
    Message message = NewRequest(subject.write, subject.header, link, 0);
    put(message);
    socket_.Request(message, action);
}

NamedBits BitsOf(const nlattr& attribute) {
    NamedBits bits;
    bool hasMask = true;
    ForEachAttribute(BytesOf(attribute), [&](int type, const nlattr& part) {
        if (type == ETHTOOL_A_BITSET_NOMASK) {
            hasMask = false;
        } else if (type == ETHTOOL_A_BITSET_BITS) {
            ForEachAttribute(BytesOf(part), [&bits](int, const nlattr& bit) {
                std::string name;
                bool isSet = false;
                ForEachAttribute(BytesOf(bit), [&](int inner, const nlattr& told) {
                    if (inner == ETHTOOL_A_BITSET_BIT_NAME) {
                        name = TextOf(told);
                    } else if (inner == ETHTOOL_A_BITSET_BIT_VALUE) {
                        isSet = true;
                    }
                });
                bits.emplace(std::move(name), isSet);
            });
        }
    });
    if (!hasMask) {
        for (auto& [name, isSet] : bits) {
            isSet = true;
        }
    }
    return bits;
}

void PutBits(Message& message, int attribute, const NamedBits& bits) {
    const auto putBit = [&message](const std::string& name, bool isSet) {
        message.PutText(ETHTOOL_A_BITSET_BIT_NAME, name);
        if (isSet) {
            message.PutFlag(ETHTOOL_A_BITSET_BIT_VALUE);
        }
    };
    const auto putAll = [&] {
        for (const auto& bit : bits) {
            message.Nest(ETHTOOL_A_BITSET_BITS_BIT | NLA_F_NESTED,
                         [&] { putBit(bit.first, bit.second); });
        }
    };
    message.Nest(attribute | NLA_F_NESTED,
                 [&] { message.Nest(ETHTOOL_A_BITSET_BITS | NLA_F_NESTED, putAll); });
}

}  // namespace tavrolinux
