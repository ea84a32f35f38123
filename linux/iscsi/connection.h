#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "linux/iscsi/gate.h"
#include "linux/iscsi/login_exchange.h"
#include "linux/iscsi/wait.h"
#include "linux/iscsi/wire.h"

// This header stands in no C++ linkage of its own where the library's do not.
struct iscsi_context;
struct scsi_task;

namespace tavrolinux {

// How a session talks: libiscsi without its own waiting, since that knows no time limit while it
// connects and would try again. Each step is begun, and then the connection is served until the
// step is done or its time has passed. Behind a gate, libiscsi is given only what the step can get,
// and no more than was asked for.
class Session::Connection {
  public:
    // Connects and logs in.
    Connection(const SessionPlan& plan, const tavroapi::LoginOptions& login);
    ~Connection() = default;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    std::vector<DiscoveredTarget> Discover();

    // Sends the command that `begin` makes of the context and of what it hands on to it, and that
    // asks for so many bytes at most.
    using Callback = void (*)(iscsi_context*, int, void*, void*);
    using BeginCommand = std::function<scsi_task*(iscsi_context*, Callback, void*)>;
    CommandAnswer Command(std::size_t longest, const BeginCommand& begin);

    void LogOut();

  private:
    // How a step stands: what libiscsi's callback writes, and what has come.
    struct Progress {
        bool isDone = false;
        int status = 0;
        std::size_t dataLeft = 0;  // how much more may come
        std::uint8_t senseKey = 0;
        std::vector<std::uint8_t> text;  // of the targets
    };
    enum class Stage { LoggingIn, Discovering, Commanding, LoggingOut };
    struct Destroy {
        void operator()(iscsi_context* context) const;
    };

    static void OnDone(iscsi_context* context, int status, void* data, void* progress);

    void Configure(const SessionPlan& plan, const tavroapi::LoginOptions& login);
    void BindTo(const std::string& interface);
    void Connect();
    void WantBound() const;
    void LogIn(const tavroapi::LoginOptions& login);

    // Serves the connection until the step that was begun is done.
    void Await(Stage stage, const std::string& step);
    WaitClock::time_point Deadline() const;
    // Lets libiscsi do what those events call for.
    void Serve(short events, const std::string& step);
    // Gives libiscsi the unit that has come.
    void HandOn(const std::string& step);
    void SendRequests(const std::string& step);
    // Refuses what the step cannot get, by what is there of a unit.
    void Admit(Stage stage, const std::string& step);
    // Looks at a unit that has come as a whole; whether libiscsi has to see it.
    bool Take(const std::string& step);
    void TakeLoginAnswer(const std::string& step);
    void TakeData(const std::string& step);
    bool TakeText(const std::string& step);
    void TakeStatus(const std::string& step);
    [[noreturn]] void Throw(LoginFault fault, const std::string& step) const;

    Portal portal_;
    std::string target_;
    WaitClock::time_point end_;
    std::string bound_;  // the interface that the connection leaves through; empty for any
    int descriptor_ = -1;
    bool hasDigest_ = false;
    Progress progress_;
    std::optional<LoginExchange> exchange_;  // while it logs in
    std::optional<Gate> gate_;               // once it is connected
    // Goes before the above, to which it hands what it gives up.
    std::unique_ptr<iscsi_context, Destroy> context_;
};

}  // namespace tavrolinux
