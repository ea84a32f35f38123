// A management library that watches what its program does with a secret: which operations get it,
// whether a core would hold it, and, when the program has ended, what is left of it in memory. The
// library itself keeps no copy. It may have a signal handler, too (TAVRO_HANDLED_SIGNAL), which
// adds a byte to a file each time (TAVRO_HANDLED_FILE).
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>

#include "memory_search.h"
#include "tavroapi/boot_records.h"
#include "tavroapi/exported_functions.h"
#include "tavroapi/iscsi_storage_records.h"

namespace {

using tavroapi::OperationCode;

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

volatile std::sig_atomic_t handledSignals = 0;
int handledFile = -1;

// Comes back twice, and then lets the signal end the program.
void HandleSignal(int signal) {
    handledSignals = handledSignals + 1;
    if (write(handledFile, "!", 1) != 1 || handledSignals > 2) {
        std::signal(signal, SIG_DFL);
        std::raise(signal);
    }
}

// The program's static objects that were made after this one are gone when it goes.
class Watch {
  public:
    Watch() : secret(Variable("TAVRO_SECRET")), report(Variable("TAVRO_SECRET_REPORT")) {}
    ~Watch() { secret_memory::ReportSearch(secret, report); }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    void NoteOperation(std::uint32_t operation, std::size_t secretCount) {
        rlimit core{};
        getrlimit(RLIMIT_CORE, &core);
        const bool leavesCore = core.rlim_max != 0 || prctl(PR_GET_DUMPABLE) != 0;
        report << "operation " << operation << " secrets " << secretCount
               << (leavesCore ? " core" : " no core") << std::endl;
    }

    const secret_memory::Secret secret;

  private:
    std::ofstream report;
};

Watch watch;

std::size_t CountSecrets(const tavroapi::LoginOptions& options) {
    return static_cast<std::size_t>(watch.secret.IsIn(options.targetSecret)) +
           static_cast<std::size_t>(watch.secret.IsIn(options.initiatorSecret));
}

std::size_t CountSecrets(const tavroapi::IscsiBootConfig& config) {
    std::size_t count = 0;
    for (const std::size_t position : tavroapi::IscsiBootConfig::SecretPositions) {
        count += static_cast<std::size_t>(watch.secret.IsIn(config.texts[position]));
    }
    return count;
}

template <OperationCode Code>
tavroapi::InputOf<Code>& Input(void* input) {
    return *static_cast<tavroapi::InputOf<Code>*>(input);
}

std::size_t CountSecretsOf(OperationCode operation, void* input) {
    switch (operation) {
        case OperationCode::SetInitiator:
            return CountSecrets(Input<OperationCode::SetInitiator>(input).login);
        case OperationCode::AddPortal:
            return CountSecrets(Input<OperationCode::AddPortal>(input).login);
        case OperationCode::LogInToTarget:
            return CountSecrets(Input<OperationCode::LogInToTarget>(input).login);
        case OperationCode::WriteIscsiBoot:
            return CountSecrets(Input<OperationCode::WriteIscsiBoot>(input));
        default:
            return 0;
    }
}

void HandOutSecrets(OperationCode operation, void* output) {
    if (operation == OperationCode::ReadInitiator) {
        auto& login = static_cast<tavroapi::InitiatorRecord*>(output)->login;
        watch.secret.AppendTo(login.targetSecret);
        watch.secret.AppendTo(login.initiatorSecret);
    } else if (operation == OperationCode::ReadIscsiBoot) {
        auto& config = *static_cast<tavroapi::IscsiBootConfig*>(output);
        for (const std::size_t position : tavroapi::IscsiBootConfig::SecretPositions) {
            watch.secret.AppendTo(config.texts[position]);
        }
    }
}

}  // namespace

extern "C" {

std::uint32_t TAVROAPI_Initialize(std::uint32_t, std::wstring*) {
    if (const std::string number = Variable("TAVRO_HANDLED_SIGNAL"); !number.empty()) {
        handledFile = open(Variable("TAVRO_HANDLED_FILE").c_str(),
                           O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
        std::signal(std::stoi(number), HandleSignal);
    }
    return 0;
}

std::uint32_t TAVROAPI_Uninitialize() {
    return 0;
}

std::uint32_t TAVROAPI_GetHostName(std::string*) {
    return 0;
}

std::uint32_t TAVROAPI_GetDiscoveredAdapters(std::list<tavroapi::AdapterRecord>* adapters) {
    adapters->push_back({"Adapter", 1, {"Port 1"}});
    return 0;
}

std::uint32_t TAVROAPI_GetPortWWNs(std::string*, std::string*,
                                   std::list<tavroapi::FunctionAddress>* addresses,
                                   std::list<tavroapi::FunctionIdentity>* identities) {
    addresses->push_back({"K", "A", 2});
    identities->push_back({"K", tavroapi::IscsiFunction, "S"});
    return 0;
}

std::uint32_t TAVROAPI_GetPartitionState(std::string*, std::uint32_t* state) {
    *state = 1;
    return 0;
}

std::uint32_t TAVROAPI_GetLocalizeMessage(std::uint32_t messageId, std::wstring* text) {
    *text = L"#" + std::to_wstring(messageId);
    return 0;
}

std::uint32_t TAVROAPI_DoOperation(std::uint32_t operation, std::string*, void* input,
                                   void* output) {
    const auto code = static_cast<OperationCode>(operation);
    watch.NoteOperation(operation, CountSecretsOf(code, input));
    HandOutSecrets(code, output);
    return 0;
}

}  // extern "C"
