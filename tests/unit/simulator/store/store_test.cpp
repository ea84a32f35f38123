#include "simulator/store/store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>

#include "library/calls/refusals.h"
#include "library/platform/file.h"
#include "simulator/host/host_file.h"
#include "unit/library/support.h"

namespace tavrosim {
namespace {

namespace platform = tavrolib::platform;
using tavrolib::Done;
using tavrolib::Outcome;
using tavrolib::Status;
using tavrolib_test::Folder;
using tavrolib_test::Variable;

Outcome AddAdapter(Host& host, std::string name) {
    host.adapters.emplace_back().name = std::move(name);
    return Done();
}

std::wstring DetailsOf(const Outcome& outcome) {
    return outcome.error ? outcome.error->details : std::wstring();
}

std::string CodeText(Status status) {
    return std::to_string(static_cast<std::uint32_t>(status));
}

class StoreTest : public testing::Test {
  protected:
    std::filesystem::path File() const { return folder_ / "host.json"; }
    Store NewStore() const { return Store({File(), false}); }

    Folder folder_;
};

TEST_F(StoreTest, DefaultHostStandsInForAMissingFile) {
    Store store = NewStore();
    ASSERT_TRUE(store.Load().IsDone());
    EXPECT_EQ(TextFromHost(store.Current()), TextFromHost(DefaultHost()));
    EXPECT_FALSE(std::filesystem::exists(File()));
}

TEST_F(StoreTest, TheRestartPutsInForceWhatIsPendingInTheFile) {
    Store store = NewStore();
    ASSERT_TRUE(store.Load().IsDone());
    const auto pend = [](Host& host) {
        host.adapters[0].ports[0].functions[0].ethernet->tcpIp.pendingVlanId = "12";
        return Done();
    };
    ASSERT_TRUE(store.Change(pend).IsDone());
    ASSERT_TRUE(NewStore().RestartHost().IsDone());
    ASSERT_TRUE(store.Load().IsDone());
    const TcpIp& settings = store.Current().adapters[0].ports[0].functions[0].ethernet->tcpIp;
    EXPECT_EQ(settings.vlanId, "12");
    EXPECT_FALSE(settings.pendingVlanId);
}

TEST_F(StoreTest, FirstChangeMakesTheFileForTheOwnerOnly) {
    Store store = NewStore();
    ASSERT_TRUE(store.Load().IsDone());
    ASSERT_TRUE(store.Change([](Host& host) { return AddAdapter(host, "new"); }).IsDone());
    EXPECT_EQ(store.Current().adapters.back().name, "new");
    EXPECT_EQ(HostFromText(tavrolib_test::Read(File())).adapters.back().name, "new");
    EXPECT_TRUE(tavrolib_test::IsOwnersOnly(File()));
    EXPECT_TRUE(tavrolib_test::IsOwnersOnly(folder_ / "host.json.lock"));
    EXPECT_TRUE(tavrolib_test::NewFilesIn(folder_ / "").empty());
    ASSERT_TRUE(store.Change([](Host& host) { return AddAdapter(host, "newer"); }).IsDone());
    EXPECT_TRUE(tavrolib_test::IsOwnersOnly(File()));
}

TEST_F(StoreTest, AFileThatIsThereIsReadByWhomItWas) {
    tavrolib_test::Write(File(), TextFromHost(DefaultHost()));
    Store store = NewStore();
    ASSERT_TRUE(store.Change([](Host& host) { return AddAdapter(host, "new"); }).IsDone());
    EXPECT_FALSE(tavrolib_test::IsOwnersOnly(File()));
    EXPECT_FALSE(tavrolib_test::IsOwnersOnly(folder_ / "host.json.lock"));
}

TEST_F(StoreTest, ARefusedChangeWritesNothing) {
    const std::string before = TextFromHost(DefaultHost()) + "\n\n";
    tavrolib_test::Write(File(), before);
    Store store = NewStore();
    ASSERT_TRUE(store.Load().IsDone());
    const Outcome outcome = store.Change([](Host& host) {
        host.name = "changed";
        return tavrolib::Refused(77, L"This setting cannot be changed.", L"Leave it as it is.");
    });
    EXPECT_EQ(outcome.status, 77U);
    EXPECT_EQ(store.Current().name, DefaultHost().name);
    EXPECT_EQ(tavrolib_test::Read(File()), before);
}

TEST_F(StoreTest, AChangeThatContradictsItselfIsNotWritten) {
    Store store = NewStore();
    const Outcome outcome =
        store.Change([](Host& host) { return AddAdapter(host, host.adapters.front().name); });
    EXPECT_EQ(std::to_string(outcome.status), CodeText(Status::HostNotWritten));
    EXPECT_FALSE(std::filesystem::exists(File()));
}

TEST_F(StoreTest, AnUnusableFileIsNamedAndNeverOverwritten) {
    for (const std::string content : {"", "{", "[]", R"({"name": 5, "adapters": []})",
                                      R"({"name": "h", "adapters": [], "more": 1})"}) {
        tavrolib_test::Write(File(), content);
        Store store = NewStore();
        const Outcome loaded = store.Load();
        EXPECT_EQ(std::to_string(loaded.status), CodeText(Status::HostUnusable)) << content;
        EXPECT_FALSE(store.IsLoaded());
        EXPECT_NE(DetailsOf(loaded).find(L"host.json"), std::wstring::npos) << content;
        EXPECT_FALSE(store.Change([](Host&) { return Done(); }).IsDone()) << content;
        EXPECT_EQ(tavrolib_test::Read(File()), content);
    }
}

TEST_F(StoreTest, RefusalNamesThePlaceInTheFile) {
    tavrolib_test::Write(File(), R"({"name": "h", "adapters": [7]})");
    Store store = NewStore();
    const std::wstring details = DetailsOf(store.Load());
    EXPECT_NE(details.find(L"adapters[0]: an object is wanted, not a number"), std::wstring::npos);
}

TEST_F(StoreTest, AFolderInThePlaceOfTheFileIsRefused) {
    std::filesystem::create_directory(File());
    Store store = NewStore();
    const Outcome loaded = store.Load();
    EXPECT_EQ(std::to_string(loaded.status), CodeText(Status::HostUnusable));
    EXPECT_NE(DetailsOf(loaded).find(L"host.json"), std::wstring::npos);
}

TEST_F(StoreTest, AFileOfTheUsersWithALikelyNameStays) {
    tavrolib_test::Write(folder_ / "host.json.new", "the user's own");
    Store store = NewStore();
    EXPECT_TRUE(store.Change([](Host& host) { return AddAdapter(host, "new"); }).IsDone());
    EXPECT_EQ(tavrolib_test::Read(folder_ / "host.json.new"), "the user's own");
    EXPECT_EQ(tavrolib_test::NewFilesIn(folder_ / "").size(), 1U);
}

TEST_F(StoreTest, AFileThatCannotBeWrittenStaysAsItWas) {
    const std::string before = TextFromHost(DefaultHost());
    tavrolib_test::Write(File(), before);
    Store store = NewStore();
    ASSERT_TRUE(store.Load().IsDone());
    const auto aside = folder_ / "aside";
    const Outcome outcome = store.Change([&](Host& host) {
        std::filesystem::rename(File(), aside);
        std::filesystem::create_directories(File() / "in the way");
        return AddAdapter(host, "new");
    });
    EXPECT_EQ(std::to_string(outcome.status), CodeText(Status::HostNotWritten));
    EXPECT_NE(DetailsOf(outcome).find(L"host.json: cannot be replaced"), std::wstring::npos);
    EXPECT_EQ(tavrolib_test::Read(aside), before);
    EXPECT_TRUE(tavrolib_test::NewFilesIn(folder_ / "").empty());
    EXPECT_EQ(store.Current().adapters.size(), DefaultHost().adapters.size());
}

TEST_F(StoreTest, AMissingFolderIsNamed) {
    Store store({folder_ / "nowhere" / "host.json", false});
    ASSERT_TRUE(store.Load().IsDone());
    const Outcome outcome = store.Change([](Host&) { return Done(); });
    EXPECT_EQ(std::to_string(outcome.status), CodeText(Status::HostNotWritten));
    EXPECT_NE(DetailsOf(outcome).find(L"nowhere"), std::wstring::npos);
}

TEST_F(StoreTest, AChangeWorksOnTheFileAsItIsNow) {
    Store first = NewStore();
    Store second = NewStore();
    ASSERT_TRUE(first.Load().IsDone());
    ASSERT_TRUE(second.Load().IsDone());
    ASSERT_TRUE(first.Change([](Host& host) { return AddAdapter(host, "one"); }).IsDone());
    ASSERT_TRUE(second.Change([](Host& host) { return AddAdapter(host, "two"); }).IsDone());
    const Host host = HostFromText(tavrolib_test::Read(File()));
    EXPECT_EQ(host.adapters.size(), DefaultHost().adapters.size() + 2);
}

TEST_F(StoreTest, TwoWritersAtOnceLoseNothingAndReadersSeeWholeFiles) {
    constexpr int Changes = 25;
    std::atomic<bool> isOver = false;
    std::atomic<int> failures = 0;
    const auto write = [&](const char* writer) {
        for (int i = 0; i < Changes; ++i) {
            Store store = NewStore();
            const std::string name = std::string(writer) + std::to_string(i);
            failures += store.Load().IsDone() ? 0 : 1;
            failures +=
                store.Change([&name](Host& host) { return AddAdapter(host, name); }).IsDone() ? 0
                                                                                              : 1;
        }
    };
    std::thread reader([&] {
        while (!isOver) {
            failures += NewStore().Load().IsDone() ? 0 : 1;
        }
    });
    std::thread one(write, "one");
    std::thread two(write, "two");
    one.join();
    two.join();
    isOver = true;
    reader.join();
    EXPECT_EQ(failures, 0);
    const Host host = HostFromText(tavrolib_test::Read(File()));
    EXPECT_EQ(host.adapters.size(), DefaultHost().adapters.size() + 2 * Changes);
}

TEST_F(StoreTest, ALockThatIsHeldIsWaitedForInVain) {
    const platform::FileLock held(folder_ / "lock", std::chrono::seconds(1));
    try {
        const platform::FileLock second(folder_ / "lock", std::chrono::milliseconds(50));
        FAIL() << "locked twice";
    } catch (const platform::FileError& error) {
        EXPECT_NE(error.Text().find(L"held by another program"), std::wstring::npos);
    }
}

TEST_F(StoreTest, AChangeWaitsForTheLockOfAnother) {
    auto held = std::make_unique<platform::FileLock>(folder_ / "host.json.lock",
                                                     std::chrono::milliseconds(0));
    std::atomic<bool> isOver = false;
    Outcome outcome;
    std::thread writer([&] {
        Store store = NewStore();
        outcome = store.Change([](Host& host) { return AddAdapter(host, "new"); });
        isOver = true;
    });
    // A change that does not wait is over long before.
    for (int i = 0; i < 300 && !isOver; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_FALSE(std::filesystem::exists(File()));
    held.reset();
    writer.join();
    EXPECT_TRUE(outcome.IsDone());
    EXPECT_EQ(HostFromText(tavrolib_test::Read(File())).adapters.back().name, "new");
}

TEST_F(StoreTest, ASymbolicLinkIsFollowed) {
    std::filesystem::create_directory(folder_ / "real");
    std::error_code error;
    std::filesystem::create_symlink(std::filesystem::path("real") / "host.json", File(), error);
    if (error) {
        // Links need a privilege on Windows; without it there is nothing to follow.
        EXPECT_FALSE(std::filesystem::exists(File()));
        return;
    }
    Store store = NewStore();
    ASSERT_TRUE(store.Change([](Host& host) { return AddAdapter(host, "new"); }).IsDone());
    EXPECT_TRUE(std::filesystem::is_symlink(File()));
    EXPECT_EQ(
        HostFromText(tavrolib_test::Read(folder_ / "real" / "host.json")).adapters.back().name,
        "new");
}

TEST_F(StoreTest, NamedFileComesFirstThenTheUsersFolder) {
    const std::string folder = (folder_ / "data").string();
    const Variable dataHome("XDG_DATA_HOME", folder);
    const Variable localData("LOCALAPPDATA", folder);
    {
        const Variable named("TAVROSIM_HOST", File().string());
        const HostPlace place = HostPlace::FromEnvironment();
        EXPECT_EQ(place.path, File());
        EXPECT_FALSE(place.isDefault);
    }
    const Variable unnamed("TAVROSIM_HOST", "");
    const HostPlace place = HostPlace::FromEnvironment();
    ASSERT_TRUE(place.path.has_value());
    EXPECT_TRUE(place.isDefault);
    EXPECT_EQ(place.path->filename(), "host.json");
    EXPECT_EQ(place.path->parent_path().parent_path(), folder_ / "data");
    Store store(place);
    ASSERT_TRUE(store.Change([](Host& host) { return AddAdapter(host, "new"); }).IsDone());
    EXPECT_TRUE(std::filesystem::exists(*place.path));
}

}  // namespace
}  // namespace tavrosim
