// Writing to a standard output that is not always ready for it. What is tested exists on POSIX
// alone.
#ifndef _WIN32

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <string>
#include <thread>
#include <utility>

#include "platform/output.h"

namespace tavro::platform {
namespace {

constexpr int PipeSize = 4096;

// Standard output is a small pipe while this lives.
class OutputPipe : public ::testing::Test {
  protected:
    OutputPipe() : former_(dup(STDOUT_FILENO)) {
        std::fflush(stdout);
        std::array<int, 2> ends{-1, -1};
        EXPECT_EQ(pipe(ends.data()), 0);
        reader_ = ends[0];
        EXPECT_EQ(dup2(ends[1], STDOUT_FILENO), STDOUT_FILENO);
        close(ends[1]);
        EXPECT_EQ(fcntl(STDOUT_FILENO, F_SETPIPE_SZ, PipeSize), PipeSize);
        formerAction_ = std::signal(SIGPIPE, SIG_IGN);
    }
    ~OutputPipe() override {
        std::signal(SIGPIPE, formerAction_);
        RestoreOutput();
        CloseReader();
    }

    // Before anything is expected: a failure is told on standard output.
    void RestoreOutput() {
        if (former_ >= 0) {
            dup2(former_, STDOUT_FILENO);
            close(std::exchange(former_, -1));
        }
    }

    static void MakeNonBlocking() {
        ASSERT_EQ(fcntl(STDOUT_FILENO, F_SETFL, O_WRONLY | O_NONBLOCK), 0);
    }
    static void Fill() {
        const std::string block(PipeSize, 'f');
        ASSERT_EQ(write(STDOUT_FILENO, block.data(), block.size()), PipeSize);
    }
    void CloseReader() {
        if (reader_ >= 0) {
            close(std::exchange(reader_, -1));
        }
    }

    // Waits until the pipe holds all it can, or the writer is done.
    void WaitUntilFull(const std::atomic<bool>& isDone) const {
        int held = 0;
        while (ioctl(reader_, FIONREAD, &held) == 0 && held < PipeSize && !isDone) {
            std::this_thread::yield();
        }
    }
    // What the pipe holds; does not wait.
    std::string ReadSome() const {
        int held = 0;
        if (ioctl(reader_, FIONREAD, &held) != 0 || held == 0) {
            return {};
        }
        std::array<char, PipeSize> block{};
        const ssize_t got = read(reader_, block.data(), block.size());
        return {block.data(), static_cast<std::size_t>(std::max<ssize_t>(got, 0))};
    }

    int reader_ = -1;

  private:
    int former_;
    void (*formerAction_)(int) = nullptr;
};

// A text of which no two parts are alike, and that ends in the middle of a full pipe.
std::string LongText() {
    std::string text;
    for (int number = 0; text.size() < 50 * PipeSize + 100; ++number) {
        text += std::to_string(number) + ' ';
    }
    return text;
}

TEST_F(OutputPipe, ANonBlockingPipeThatIsFullIsWaitedFor) {
    MakeNonBlocking();
    const std::string text = LongText();
    std::atomic<bool> isDone = false;
    bool written = false;
    std::thread writer([&] {
        written = WriteStandardOutput(text);
        isDone = true;
    });
    std::string arrived;
    while (!isDone) {
        WaitUntilFull(isDone);
        if (!isDone) {
            arrived += ReadSome();
        }
    }
    writer.join();
    RestoreOutput();
    arrived += ReadSome();
    EXPECT_TRUE(written);
    EXPECT_EQ(arrived, text);
}

TEST_F(OutputPipe, AReaderThatGoesAwayEndsTheWaiting) {
    MakeNonBlocking();
    Fill();
    std::atomic<bool> isDone = false;
    bool written = true;
    std::thread writer([&] {
        written = WriteStandardOutput("more");
        isDone = true;
    });
    for (int i = 0; i < 50 && !isDone; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    const bool hasWaited = !isDone;
    CloseReader();
    writer.join();
    RestoreOutput();
    EXPECT_TRUE(hasWaited);
    EXPECT_FALSE(written);
}

std::atomic<int> Interruptions = 0;

TEST_F(OutputPipe, AnInterruptedWriteIsRepeated) {
    struct sigaction counting {};
    counting.sa_handler = [](int) { ++Interruptions; };  // and no SA_RESTART
    struct sigaction former {};
    ASSERT_EQ(sigaction(SIGUSR1, &counting, &former), 0);
    Fill();
    std::atomic<bool> isDone = false;
    bool written = false;
    std::thread writer([&] {
        written = WriteStandardOutput("whole");
        isDone = true;
    });
    // The pipe is full: all but the earliest of these meet a write that waits.
    const int wanted = Interruptions + 50;
    while (Interruptions < wanted && !isDone) {
        pthread_kill(writer.native_handle(), SIGUSR1);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    const bool hasWaited = !isDone;
    const std::string filling = ReadSome();
    writer.join();
    sigaction(SIGUSR1, &former, nullptr);
    RestoreOutput();
    EXPECT_TRUE(hasWaited);
    EXPECT_EQ(filling, std::string(PipeSize, 'f'));
    EXPECT_TRUE(written);
    EXPECT_EQ(ReadSome(), "whole");
}

TEST_F(OutputPipe, AnythingElseIsAFailureAtOnce) {
    CloseReader();
    const bool toNobody = WriteStandardOutput("x");
    const int full = open("/dev/full", O_WRONLY);
    dup2(full, STDOUT_FILENO);
    close(full);
    const bool toFull = WriteStandardOutput("x");
    const int readOnly = open("/dev/null", O_RDONLY);
    dup2(readOnly, STDOUT_FILENO);
    close(readOnly);
    const bool toReadOnly = WriteStandardOutput("x");
    RestoreOutput();
    EXPECT_FALSE(toNobody);
    EXPECT_FALSE(toFull);
    EXPECT_FALSE(toReadOnly);
}

}  // namespace
}  // namespace tavro::platform

#endif
