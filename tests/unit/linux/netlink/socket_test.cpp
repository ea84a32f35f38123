#include "linux/netlink/socket.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/netlink.h>
#include <unistd.h>

#include <vector>

#include "linux/netlink/links.h"
#include "linux/system/descriptor.h"
#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

// Takes the kernel away from the connection.
void CutOff(const Socket& route) {
    const Descriptor nothing(::open("/dev/null", O_RDWR | O_CLOEXEC));
    ASSERT_GE(::dup2(nothing.Get(), nl_socket_get_fd(route.Get())), 0);
}

TEST(Socket, IsUsableAfterARequestThatWasNotCarriedThrough) {
    Socket route(NETLINK_ROUTE);
    const std::size_t links = ReadLinks(route).size();
    for (int time = 0; time < 2; ++time) {
        CutOff(route);
        EXPECT_THROW(ReadLinks(route), SystemFailure);
        EXPECT_EQ(ReadLinks(route).size(), links);
    }
    EXPECT_GT(links, 0U);
}

TEST(Message, HasRoomForWhatItIsMadeFor) {
    const std::vector<std::uint8_t> longest(0xFFF0, 1);
    Message message(1, 2, longest.size() + sizeof(nlattr));
    message.Put(5, longest);
    EXPECT_EQ(nlmsg_hdr(message.Get())->nlmsg_type, 1);
    EXPECT_EQ(nlmsg_hdr(message.Get())->nlmsg_flags, 2);
    int found = 0;
    ForEachAttribute(AttributesOf(*nlmsg_hdr(message.Get()), 0),
                     [&](int type, const nlattr& attribute) {
                         ++found;
                         EXPECT_EQ(type, 5);
                         EXPECT_EQ(BytesOf(attribute).size(), longest.size());
                     });
    EXPECT_EQ(found, 1);
}

}  // namespace
}  // namespace tavrolinux
