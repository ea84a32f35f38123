// The XML document reader beside pugixml: the time to read a generated configuration of 20 MB from
// a file, and the memory that this takes at its peak, in one run. The readers take turns, so that a
// machine that slows down slows down both. The last lines are the ratios.
//
// pugixml is measured twice: as it comes, when it drops blank text, comments and the DOCTYPE, and
// keeping everything that the reader keeps. With the argument "--short" a small
// configuration is read a few times, to show that it works.
#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>
#include <pugixml.hpp>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "xml/file.h"

namespace {

constexpr std::size_t ConfigurationSize = 20'000'000;
constexpr std::size_t ShortConfigurationSize = 200'000;
constexpr unsigned KeepAll = pugi::parse_full | pugi::parse_ws_pcdata;

// Appends elements of which each has its value in an attribute.
class Writer {
  public:
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

    void Open(std::string_view tag) {
        Indent();
        text.append("<").append(tag).append(">\n");
        ++depth;
    }
    void Close(std::string_view name) {
        --depth;
        Indent();
        text.append("</").append(name).append(">\n");
    }
    void Value(std::string_view name, std::string_view value) {
        Indent();
        text.append("<").append(name).append(" value=\"").append(value).append("\"/>\n");
    }

  private:
    void Indent() { text.append(2 * depth, ' '); }

    std::size_t depth = 0;
};

void WriteLogin(Writer& out, std::size_t number) {
    out.Value("Multipath", "No");
    out.Value("Header_Digest", "No");
    out.Value("Data_Digest", "Yes");
    out.Value("Auth_Method", number % 3 == 0 ? "MutualCHAP" : "None");
    out.Value("Target_CHAPName", "target-" + std::to_string(number));
    out.Value("Target_Secret", "secret&amp;" + std::to_string(number * 7919));
    out.Value("Initiator_CHAPName", "host");
    out.Value("Initiator_Secret", "other secret");
}

void WritePort(Writer& out, std::size_t number) {
    const std::string host = std::to_string(number % 250 + 1);
    out.Open("Port name=\"Port " + std::to_string(number % 2 + 1) + "\" function=\"" +
             std::to_string(number % 8) + "\"");
    out.Open("TCP_IP_Setting");
    out.Value("Vlan_Enabled", "Yes");
    out.Value("Vlan_Id", std::to_string(number % 4094 + 1));
    out.Value("Dhcp_Enabled", "No");
    out.Value("IP_Address", "192.0.2." + host);
    out.Value("Subnet_Mask", "255.255.255.0");
    out.Value("Default_Gateway", "192.0.2.254");
    out.Value("Static_IPv6", "2001:db8::" + host);
    out.Close("TCP_IP_Setting");
    for (std::size_t portal = 0; portal < 4; ++portal) {
        out.Open("Portal_Login");
        out.Value("IP_Address", "198.51.100." + std::to_string(portal));
        out.Value("Port_Number", "3260");
        WriteLogin(out, portal);
        out.Close("Portal_Login");
    }
    for (std::size_t target = 0; target < 16; ++target) {
        out.Open("Target_Login");
        out.Value("Target_Name", "iqn.2001-04.com.example:storage.disk" + std::to_string(target) +
                                     ".port" + std::to_string(number));
        out.Value("Status", target % 4 == 0 ? "Not Connected" : "Connected");
        out.Value("Portal_IP", "198.51.100." + std::to_string(target % 4));
        out.Value("Portal_PortNumber", "3260");
        out.Value("Immediate_Data", "Yes");
        WriteLogin(out, target);
        out.Close("Target_Login");
    }
    out.Close("Port");
}

std::string MakeConfiguration(std::size_t size) {
    Writer out;
    out.Open("Configuration");
    out.Open("Initiator_Login");
    out.Value("Initiator_Name", "iqn.2001-04.com.example:host");
    WriteLogin(out, 0);
    out.Close("Initiator_Login");
    for (std::size_t number = 0; out.text.size() < size; number += 2) {
        out.Open("Adapter id=\"" + std::to_string(number / 2) + "\"");
        WritePort(out, number);
        WritePort(out, number + 1);
        out.Close("Adapter");
    }
    out.Close("Configuration");
    return out.text;
}

// A file that is removed at the end.
struct ConfigurationFile {
    std::filesystem::path path = std::filesystem::temp_directory_path() /
                                 ("tavro-bench-" + std::to_string(getpid()) + ".xml");
    explicit ConfigurationFile(std::size_t size) {
        std::ofstream(path, std::ios::binary) << MakeConfiguration(size);
    }
    ~ConfigurationFile() {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
};

[[noreturn]] void GiveUp(const char* what) {
    std::fprintf(stderr, "error: %s\n", what);
    std::exit(1);
}

// Each reader reads the file, calls `afterwards` with the document still in memory, and lets go of
// it.
using Reader = void (*)(const std::filesystem::path& path, void (*afterwards)());

void ReadWithTavro(const std::filesystem::path& path, void (*afterwards)()) {
    tavro::xml::XmlResults results;
    const tavro::xml::XmlNode top = tavro::xml::ParseXmlFile(path.wstring(), results);
    if (top.ChildCount() < 2 || results.error != 0) {
        GiveUp("the reader refused the configuration");
    }
    afterwards();
}

template <unsigned Options>
void ReadWithPugixml(const std::filesystem::path& path, void (*afterwards)()) {
    pugi::xml_document document;
    const pugi::xml_parse_result result =
        document.load_file(path.c_str(), Options, pugi::encoding_utf8);
    if (!result || !document.document_element().first_child()) {
        GiveUp("pugixml refused the configuration");
    }
    afterwards();
}

#ifdef PUGIXML_WCHAR_MODE
constexpr const char* Mode = "wide";
#else
constexpr const char* Mode = "char";
#endif

constexpr std::pair<const char*, Reader> Readers[] = {
    {"tavro", ReadWithTavro},
    {"pugixml", ReadWithPugixml<pugi::parse_default>},
    {"pugixml_keeping_all", ReadWithPugixml<KeepAll>},
};

// The peak of this process's memory in kilobytes.
long PeakMemory() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.starts_with("VmHWM:")) {
            return std::strtol(line.c_str() + 6, nullptr, 10);
        }
    }
    GiveUp("the system does not tell the peak of the memory");
}

// The peak with the reader at work in a process of its own; without one, what any process takes.
long MeasureMemory(const char* self, const char* reader, const std::filesystem::path& path) {
    std::string command = "'";
    command.append(self).append("' --memory-of ").append(reader).append(" '");
    command.append(path.string()).append("'");
    FILE* const output = popen(command.c_str(), "r");
    long kilobytes = 0;
    if (output == nullptr || std::fscanf(output, "%ld", &kilobytes) != 1 || pclose(output) != 0) {
        GiveUp("the process that measures the memory failed");
    }
    return kilobytes;
}

int PrintMemory(std::string_view name, const char* path) {
    for (const auto& [readerName, reader] : Readers) {
        if (name == readerName) {
            reader(path, [] {});
        }
    }
    std::printf("%ld\n", PeakMemory());
    return 0;
}

// Shows the results as usual and remembers the medians.
class MedianReporter : public benchmark::ConsoleReporter {
  public:
    std::map<std::string, double> medians;

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
                medians[run.run_name.function_name] = run.GetAdjustedRealTime();
            }
        }
    }
};

void PrintRatios(const char* what, std::map<std::string, double>& figures, const char* unit) {
    for (const auto& [name, reader] : Readers) {
        std::printf("%-8s %-22s %10.1f %s   tavro / this: %.2f\n", what, name, figures[name], unit,
                    figures["tavro"] / figures[name]);
    }
}

}  // namespace

int main(int argc, char** argv) {
    // File names and text without a mark are UTF-8.
    std::setlocale(LC_ALL, "C.UTF-8");
    if (argc == 4 && std::string_view(argv[1]) == "--memory-of") {
        return PrintMemory(argv[2], argv[3]);
    }
    const bool isShort = argc == 2 && std::string_view(argv[1]) == "--short";
    const ConfigurationFile file(isShort ? ShortConfigurationSize : ConfigurationSize);
    for (const auto& [name, reader] : Readers) {
        auto* const entry =
            benchmark::RegisterBenchmark(name, [&file, reader = reader](benchmark::State& state) {
                for (auto _ : state) {
                    reader(file.path, [] {});
                }
                state.SetBytesProcessed(
                    state.iterations() *
                    static_cast<std::int64_t>(std::filesystem::file_size(file.path)));
            });
        entry->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(9)->ReportAggregatesOnly();
        if (isShort) {
            entry->Iterations(1);
        }
    }
    std::vector<char*> arguments(argv, argv + (isShort ? 1 : argc));
    std::string interleave = "--benchmark_enable_random_interleaving=true";
    arguments.insert(arguments.begin() + 1, interleave.data());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    std::map<std::string, double> memory;
    const double base = static_cast<double>(MeasureMemory(argv[0], "none", file.path));
    for (const auto& [name, reader] : Readers) {
        if (reporter.medians[name] <= 0) {
            GiveUp("a reader was not measured");
        }
        memory[name] = (static_cast<double>(MeasureMemory(argv[0], name, file.path)) - base) / 1024;
    }
    std::printf("\n%.1f MB of text, pugixml in %s mode\n",
                static_cast<double>(std::filesystem::file_size(file.path)) / 1e6, Mode);
    PrintRatios("time", reporter.medians, "ms ");
    PrintRatios("memory", memory, "MiB");
    return 0;
}
