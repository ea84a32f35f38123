#include "cli/command_line.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "dispatch.h"

namespace tavro {
namespace {

// Parses a command line written as one text, its words separated by single blanks.
std::uint32_t Parse(const std::string& line) {
    std::vector<std::string> words{"tavrocli"};
    std::istringstream stream(line);
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    std::vector<const char*> arguments;
    for (const std::string& word : words) {
        arguments.push_back(word.c_str());
    }
    CurrentMacText = CurrentWwnText = "untouched";
    return static_cast<std::uint32_t>(ParseCommandLine(arguments, Commands()));
}

struct Expectation {
    const char* line;
    std::uint32_t code;
};

void PrintTo(const Expectation& expectation, std::ostream* stream) {
    *stream << expectation.line;
}

class Grammar : public testing::TestWithParam<Expectation> {};

TEST_P(Grammar, GivesTheCode) {
    EXPECT_EQ(Parse(GetParam().line), GetParam().code);
}

INSTANTIATE_TEST_SUITE_P(
    EveryForm, Grammar,
    testing::ValuesIn(std::vector<Expectation>{
        {"-about", 2},
        {"-help", 3},
        {"-import", 4},
        {"-showadapter", 5},
        {"-iscsi M -portinfo", 6},
        {"-iscsi M -portstat", 7},
        {"-iscsi M -defparam", 8},
        {"-iscsi -getinitiator", 9},
        {"-iscsi -setinitiator iqn.example:host", 10},
        {"-iscsi -setinitiator iqn.example:host -hd", 10},
        {"-iscsi M -portal -listall", 11},
        {"-iscsi M -portal -add 192.0.2.1", 12},
        {"-iscsi M -portal -add 192.0.2.1 3260 -mp", 12},
        {"-iscsi M -portal -remove 192.0.2.1", 13},
        {"-iscsi M -portal -remove 192.0.2.1 3260", 13},
        {"-iscsi M -target -listall", 14},
        {"-iscsi M -target -listactive", 15},
        {"-iscsi M -target -getinfo T", 16},
        {"-iscsi M -target -login T 192.0.2.1", 17},
        {"-iscsi M -target -login T 192.0.2.1 3260", 17},
        {"-iscsi M -target -sessioninfo T", 18},
        {"-iscsi M -target -sessioninfo T 1", 18},
        {"-iscsi M -target -remove T", 19},
        {"-iscsi M -target -logout T", 20},
        {"-iscsi M -target -logout T 1", 20},
        {"-iscsi M -target -lunlist T", 21},
        {"-iscsi M -modifytcpip -dhcp", 22},
        {"-iscsi M -modifytcpip -dhcp 1", 22},
        {"-iscsi M -modifytcpip -static 1 192.0.2.1 255.255.255.0", 23},
        {"-iscsi M -modifytcpip -static 1 192.0.2.1 255.255.255.0 192.0.2.254", 23},
        {"-iscsi -isns -listall", 24},
        {"-iscsi -isns -add 192.0.2.1", 25},
        {"-iscsi -isns -remove 192.0.2.1", 26},
        {"-iscsi M -ping", 27},
        {"-iscsi M -ping 192.0.2.1", 27},
        {"-iscsi M -getbootconfig", 28},
        {"-iscsi M -setbootconfig", 29},
        {"-fcoe W -portinfo", 30},
        {"-fcoe W -target -listactive", 32},
        {"-fcoe W -target -getinfo T", 33},
        {"-fcoe W -target -pbindinfo", 34},
        {"-fcoe W -portstat", 35},
        {"-fcoe W -resetstat", 36},
        {"-fcoe W -target -lunlist T", 37},
        {"-fcoe W -getdcbinfo", 38},
        {"-fcoe W -getdcbconfig", 39},
        {"-fcoe W -setdcb", 40},
        {"-fcoe W -ping T", 41},
        {"-fcoe W -ping T -pcount 4", 41},
        {"-fcoe W -getbootconfig", 42},
        {"-fcoe W -setbootconfig", 43},
        {"-fcoe W -getfip", 44},
        {"-fcoe W -setfip 100", 45},
        {"-fcoe W -getvirtualportinfo", 46},
        {"-fcoe W -createvirtualport V", 47},
        {"-fcoe W -deletevirtualport V", 48},
        {"-fcoe W -getvirtualporttarget V", 49},
        {"-fcoe W -getvirtualporttargetlun V", 50},
        {"-npar M -get", 51},
        {"-npar M -set", 52},
        {"-res M -get", 53},
        {"-res M -set", 54},
        {"-ethernet M -portinfo", 55},
        {"-ethernet M -getadapinfo", 56},
        {"-ethernet M -portstat", 57},
        {"-ethernet M -resetstat", 58},
        {"-ethernet M -gettcpip", 59},
        {"-ethernet M -modifytcpip -ipv4 -dhcp", 60},
        {"-ethernet M -modifytcpip -ipv6 -dhcp 1", 60},
        {"-ethernet M -modifytcpip anything -static", 61},
        {"-ethernet M -modifytcpip -ipv4 -static 1 192.0.2.1 255.255.255.0 192.0.2.254", 61},
        {"-ethernet M -getxml", 62},
        {"-ethernet M -setadapinfo", 63},
    }));

INSTANTIATE_TEST_SUITE_P(NotRecognised, Grammar,
                         testing::ValuesIn(std::vector<Expectation>{
                             {"", 0},
                             {"-debug", 0},
                             {"about", 0},
                             {"-About", 0},
                             {"-aboutx", 0},
                             {"-abou", 0},
                             {"-ISCSI -getinitiator", 0},
                             {"-iscsi", 0},
                             {"-iscsi M", 0},
                             {"-iscsi M -unknown", 0},
                             {"-iscsi -isns", 0},
                             {"-iscsi -isns -unknown", 0},
                             {"-iscsi -isns -portinfo", 0},
                             {"-iscsi M -portal", 0},
                             {"-iscsi M -portal -unknown 192.0.2.1", 0},
                             {"-iscsi M -target", 0},
                             {"-iscsi M -target -unknown", 0},
                             {"-iscsi M -modifytcpip", 0},
                             {"-iscsi M -modifytcpip -unknown", 0},
                             {"-fcoe", 0},
                             {"-fcoe W", 0},
                             {"-fcoe W -unknown", 0},
                             {"-fcoe W -target", 0},
                             {"-fcoe W -target -unknown", 0},
                             {"-fcoe W -target -listall", 0},
                             {"-fcoe W -ping", 0},
                             {"-fcoe W -setfip", 0},
                             {"-fcoe W -createvirtualport", 0},
                             {"-fcoe W -deletevirtualport", 0},
                             {"-fcoe W -getvirtualporttarget", 0},
                             {"-fcoe W -getvirtualporttargetlun", 0},
                             {"-npar M", 0},
                             {"-npar M -unknown", 0},
                             {"-res M", 0},
                             {"-res M -unknown", 0},
                             {"-ethernet M", 0},
                             {"-ethernet M -unknown", 0},
                             {"-ethernet M -modifytcpip", 0},
                             {"-ethernet M -modifytcpip -dhcp", 0},
                             {"-ethernet M -modifytcpip -ipv4 -unknown", 0},
                         }));

INSTANTIATE_TEST_SUITE_P(TooFewArguments, Grammar,
                         testing::ValuesIn(std::vector<Expectation>{
                             {"-iscsi -setinitiator", 1},
                             {"-iscsi -isns -add", 1},
                             {"-iscsi -isns -remove", 1},
                             {"-iscsi M -portal -add", 1},
                             {"-iscsi M -portal -remove", 1},
                             {"-iscsi M -target -getinfo", 1},
                             {"-iscsi M -target -login", 1},
                             {"-iscsi M -target -login T", 1},
                             {"-iscsi M -target -sessioninfo", 1},
                             {"-iscsi M -target -remove", 1},
                             {"-iscsi M -target -logout", 1},
                             {"-iscsi M -target -lunlist", 1},
                             {"-iscsi M -modifytcpip -static", 1},
                             {"-iscsi M -modifytcpip -static 1 192.0.2.1", 1},
                             {"-fcoe W -target -getinfo", 1},
                             {"-fcoe W -target -lunlist", 1},
                         }));

// A trailing "-debug" is not removed: it counts like any other argument.
INSTANTIATE_TEST_SUITE_P(DebugCounts, Grammar,
                         testing::ValuesIn(std::vector<Expectation>{
                             {"-help -debug", 3},
                             {"-iscsi -setinitiator -debug", 10},
                             {"-iscsi M -debug", 0},
                             {"-iscsi M -portal -add -debug", 12},
                             {"-fcoe W -getfip -debug", 0},
                             {"-fcoe W -ping -debug", 41},
                             {"-fcoe W -target -getinfo -debug", 33},
                             {"-npar M -debug", 0},
                             {"-ethernet M -modifytcpip -ipv4 -dhcp -debug", 60},
                         }));

TEST(CommandLine, FurtherArgumentsAreIgnoredAtTheTopLevel) {
    EXPECT_EQ(Parse("-about -iscsi"), 2U);
    EXPECT_EQ(Parse("-showadapter extra words"), 5U);
}

TEST(CommandLine, PortFamiliesStoreTheirIdentifier) {
    for (const char* const family : {"-iscsi", "-npar", "-res", "-ethernet"}) {
        Parse(std::string(family) + " 02-00-5E-10-00-01 -unknown");
        EXPECT_EQ(CurrentMacText, "02-00-5E-10-00-01") << family;
        EXPECT_EQ(CurrentWwnText, "untouched") << family;
    }
    Parse("-fcoe 10:00:02:00:5E:10:00:01 -unknown");
    EXPECT_EQ(CurrentWwnText, "10:00:02:00:5E:10:00:01");
    EXPECT_EQ(CurrentMacText, "untouched");
}

TEST(CommandLine, IdentifierIsNotStoredWhenTheKeywordIsMissing) {
    for (const char* const line : {"-iscsi M", "-fcoe W", "-npar M", "-res M", "-ethernet M"}) {
        Parse(line);
        EXPECT_EQ(CurrentMacText, "untouched") << line;
        EXPECT_EQ(CurrentWwnText, "untouched") << line;
    }
}

TEST(CommandLine, HostCommandsStoreNoIdentifier) {
    for (const char* const line : {"-iscsi -getinitiator", "-iscsi -setinitiator name",
                                   "-iscsi -isns -add 192.0.2.1", "-iscsi -isns -portinfo"}) {
        Parse(line);
        EXPECT_EQ(CurrentMacText, "untouched") << line;
    }
}

TEST(CommandLine, NoArgumentsAtAll) {
    EXPECT_EQ(ParseCommandLine({}, Commands()), CommandCode::NotRecognised);
}

TEST(CommandLine, ArgumentBeyondTheLastIsEmpty) {
    const char* const words[] = {"tavrocli", "-help"};
    EXPECT_EQ(ArgumentAt(words, 1), "-help");
    EXPECT_EQ(ArgumentAt(words, 2), "");
}

}  // namespace
}  // namespace tavro
