#pragma once

#include <functional>
#include <memory>
#include <string>

#include "linux/iscsi/wire.h"

// This header stands in no C++ linkage of its own where the library's do not.
struct iscsi_context;
struct scsi_task;

namespace tavrolinux {

// How a session talks: libiscsi without its own waiting, since that knows no time limit while it
// connects and would try again. Each step is begun, and then the connection is served until the
// step is done or StepLimit has passed.
class Session::Connection {
  public:
    // Connects and logs in.
    Connection(const SessionPlan& plan, const tavroapi::LoginOptions& login);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    std::vector<DiscoveredTarget> Discover();

    // Sends the command that `begin` makes of the context and of what it hands on to it.
    using Callback = void (*)(iscsi_context*, int, void*, void*);
    using BeginCommand = std::function<scsi_task*(iscsi_context*, Callback, void*)>;
    CommandAnswer Command(const BeginCommand& begin);

    void LogOut();

  private:
    // How a step stands, which libiscsi's callbacks write.
    struct Progress {
        bool isDone = false;
        int status = 0;
        std::vector<DiscoveredTarget> discovered;
    };
    enum class Stage { Connecting, LoggingIn, LoggedIn };

    static void OnDone(iscsi_context* context, int status, void* data, void* progress);
    static void OnDiscovered(iscsi_context* context, int status, void* data, void* progress);

    void Configure(const SessionPlan& plan, const tavroapi::LoginOptions& login);
    void Connect();
    void WantBound() const;
    void LogIn(const tavroapi::LoginOptions& login);

    // Serves the connection until the step that was begun is done.
    void Await(Stage stage, const std::string& step);
    // Whether libiscsi can read what has arrived as a whole answer; refuses when that is a refusal.
    bool TakeLoginAnswer(int descriptor, bool isEnded, const std::string& step);

    Portal portal_;
    std::string target_;
    std::string bound_;  // the interface that the connection leaves through; empty for any
    Progress progress_;
    bool isProven_ = false;  // the target answered a CHAP challenge
    // Goes before the above, to which it hands what it gives up.
    std::unique_ptr<iscsi_context, int (*)(iscsi_context*)> context_;
};

}  // namespace tavrolinux
