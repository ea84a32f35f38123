// The operations on the host's initiator, on a host of files.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "library/platform/file.h"
#include "linux/serve/operation.h"
#include "tavroapi/iscsi_records.h"
#include "unit/linux/tree.h"

namespace tavrolinux {
namespace {

using tavroapi::InitiatorRecord;
using tavroapi::OperationCode;

constexpr const char* NameFile = "etc/iscsi/initiatorname.iscsi";

class InitiatorOnFiles : public testing::Test {
  protected:
    InitiatorOnFiles() { tree_.Directory("variable"); }

    Outcome Set(InitiatorRecord record) {
        return Serve(OperationCode::SetInitiator, &record, nullptr);
    }
    InitiatorRecord Read() {
        InitiatorRecord record;
        EXPECT_TRUE(Serve(OperationCode::ReadInitiator, nullptr, &record).IsDone());
        return record;
    }
    std::string Content(const char* path) const {
        return tavrolib::platform::ReadWholeFile(tree_.Placed(path)).value_or("missing");
    }
    unsigned Mode(const char* path) const {
        struct stat status {};
        EXPECT_EQ(stat(tree_.Placed(path).c_str(), &status), 0);
        return status.st_mode & 0777U;
    }

    tavrolinux_test::Tree tree_;

  private:
    Outcome Serve(OperationCode code, void* input, void* output) {
        return FindOperation(static_cast<std::uint32_t>(code))
            ->serve({machine_, state_}, "", input, output);
    }

    Machine machine_{tree_.Roots(), {}};
    StateStore state_{tree_.Roots()};
};

TEST_F(InitiatorOnFiles, HasNoNameAtFirst) {
    const InitiatorRecord record = Read();
    EXPECT_EQ(record.name, "");
    EXPECT_EQ(record.login.authentication, "None");
}

TEST_F(InitiatorOnFiles, GetsAFileThatItsOwnerAloneReads) {
    EXPECT_TRUE(Set({"iqn.example:a", {}}).IsDone());
    EXPECT_EQ(Content(NameFile), "InitiatorName=iqn.example:a\n");
    EXPECT_EQ(Mode(NameFile), 0600U);
    EXPECT_EQ(Read().name, "iqn.example:a");
}

TEST_F(InitiatorOnFiles, KeepsTheRestOfTheFileAndItsMode) {
    tree_.File(NameFile, "# mine\nInitiatorName=iqn.example:a\n# end\n");
    chmod(tree_.Placed(NameFile).c_str(), 0640);
    EXPECT_TRUE(Set({"iqn.example:b", {}}).IsDone());
    EXPECT_EQ(Content(NameFile), "# mine\nInitiatorName=iqn.example:b\n# end\n");
    EXPECT_EQ(Mode(NameFile), 0640U);
}

TEST_F(InitiatorOnFiles, KeepsTheLinkThatItsFileIs) {
    tree_.File("etc/name", "InitiatorName=iqn.example:a\n");
    tree_.Link(NameFile, "../name");
    EXPECT_TRUE(Set({"iqn.example:b", {}}).IsDone());
    EXPECT_EQ(Content("etc/name"), "InitiatorName=iqn.example:b\n");
    EXPECT_TRUE(std::filesystem::is_symlink(tree_.Placed(NameFile)));
}

TEST_F(InitiatorOnFiles, HasItsSecretsInTheStateAlone) {
    InitiatorRecord record{"iqn.example:a", {}};
    record.login = {"Yes",    "No",          "No",   "Mutual CHAP",
                    "target", "firstsecret", "host", "secondsecret"};
    EXPECT_TRUE(Set(record).IsDone());
    const InitiatorRecord told = Read();
    EXPECT_EQ(told.login.authentication, "Mutual CHAP");
    EXPECT_EQ(told.login.targetChapName, "target");
    EXPECT_EQ(told.login.targetSecret, "");
    EXPECT_EQ(told.login.initiatorSecret, "");
    EXPECT_NE(Content("variable/tavrocli/state.json").find("firstsecret"), std::string::npos);
    EXPECT_EQ(Mode("variable/tavrocli/state.json"), 0600U);
    EXPECT_EQ(Mode("variable/tavrocli"), 0700U);
    EXPECT_EQ(Content(NameFile).find("secret"), std::string::npos);
}

TEST_F(InitiatorOnFiles, IsNotCalledByAnUnusableName) {
    tree_.File(NameFile, "InitiatorName=iqn.example:a\n");
    EXPECT_EQ(Set({"host", {}}).status, static_cast<std::uint32_t>(Status::InvalidInitiatorName));
    EXPECT_EQ(Content(NameFile), "InitiatorName=iqn.example:a\n");
    EXPECT_EQ(Content("variable/tavrocli/state.json"), "missing");
}

// Files of at most so many bytes can be written while this is there.
class ShortFiles {
  public:
    explicit ShortFiles(rlim_t size) : handled_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{size, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~ShortFiles() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handled_);
    }
    ShortFiles(const ShortFiles&) = delete;
    ShortFiles& operator=(const ShortFiles&) = delete;

  private:
    void (*handled_)(int);
    rlimit before_{};
};

TEST_F(InitiatorOnFiles, KeepsItsNameWhenItsOptionsCannotBeStored) {
    EXPECT_TRUE(Set({"iqn.example:a", {}}).IsDone());
    const std::string kept = Content("variable/tavrocli/state.json");
    InitiatorRecord record{"iqn.example:b", {}};
    record.login.headerDigest = "CRC32C";
    {
        const ShortFiles full(64);
        EXPECT_THROW(Set(record), StateFailure);
    }
    EXPECT_EQ(Content(NameFile), "InitiatorName=iqn.example:a\n");
    EXPECT_EQ(Content("variable/tavrocli/state.json"), kept);
    std::filesystem::remove(tree_.Placed(NameFile));
    {
        const ShortFiles full(64);
        EXPECT_THROW(Set(record), StateFailure);
    }
    EXPECT_EQ(Content(NameFile), "missing");
}

TEST_F(InitiatorOnFiles, LeavesNothingBehindOfAFileThatWasNotThere) {
    {
        const ShortFiles full(64);
        EXPECT_THROW(Set({"iqn.example:a", {}}), StateFailure);
    }
    EXPECT_FALSE(std::filesystem::exists(tree_.Placed("etc/iscsi")));
    // What the link led to was made, not the link.
    tree_.Link(NameFile, "../name");
    {
        const ShortFiles full(64);
        EXPECT_THROW(Set({"iqn.example:a", {}}), StateFailure);
    }
    EXPECT_TRUE(std::filesystem::is_symlink(tree_.Placed(NameFile)));
    EXPECT_EQ(Content("etc/name"), "missing");
    EXPECT_TRUE(Set({"iqn.example:a", {}}).IsDone());
    EXPECT_EQ(Content("etc/name"), "InitiatorName=iqn.example:a\n");
}

TEST_F(InitiatorOnFiles, HasNothingStoredWhenItsFileCannotBeWritten) {
    tree_.Directory(NameFile);
    EXPECT_EQ(Set({"iqn.example:a", {}}).status, static_cast<std::uint32_t>(Status::SystemRefused));
    EXPECT_EQ(Content("variable/tavrocli/state.json"), "missing");
}

}  // namespace
}  // namespace tavrolinux
