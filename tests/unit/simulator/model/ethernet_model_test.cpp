#include <gtest/gtest.h>

#include <string>

#include "simulator/host/host.h"
#include "simulator/model/model.h"
#include "tavroapi/ethernet_records.h"

namespace tavrosim {
namespace {

using tavroapi::AdapterSettings;
using tavroapi::EthernetPortInfo;
using tavroapi::EthernetPortStatistics;
using tavroapi::OperationCode;
using tavrolib::Outcome;
using tavrolib::Status;
namespace ethernet_port = tavroapi::ethernet_port;

constexpr const char* EthernetMac = "02-00-5E-10-00-00";
constexpr const char* OtherMac = "02-00-5E-10-00-02";

class EthernetModel : public testing::Test {
  protected:
    EthernetModel() {
        Function ethernet;
        ethernet.mac = EthernetMac;
        ethernet.ethernet.emplace().interfaceName = "eth0";
        Function iscsi;
        iscsi.mac = OtherMac;
        iscsi.iscsi.emplace();
        Port port;
        port.functions = {ethernet, iscsi};
        host.adapters.emplace_back().ports = {port};
    }

    EthernetPart& Part() { return *host.adapters[0].ports[0].functions[0].ethernet; }

    // What the library does with an operation: a change that is refused is dropped.
    Outcome Perform(OperationCode code, void* input, void* output,
                    const std::string& request = EthernetMac) {
        const OperationModel* const model = FindModel(static_cast<std::uint32_t>(code));
        if (model == nullptr) {
            ADD_FAILURE() << "no model";
            return {1, {}};
        }
        if (model->read != nullptr) {
            return model->read(host, request, input, output);
        }
        Host changed = host;
        Outcome outcome = model->change(changed, request, input, output);
        if (outcome.IsDone()) {
            host = changed;
        }
        return outcome;
    }

    AdapterSettings ReadSettings() {
        AdapterSettings record;
        EXPECT_TRUE(Perform(OperationCode::ReadAdapterSettings, nullptr, &record).IsDone());
        return record;
    }

    std::string ValueOf(std::size_t number) { return ReadSettings().settings.at(number).value; }

    Outcome Set(std::size_t number, const std::string& value) {
        AdapterSettings record = ReadSettings();
        record.settings.at(number).value = value;
        record.settings.at(number).changed = "1";
        return Perform(OperationCode::WriteAdapterSettings, &record, nullptr);
    }

    EthernetPortInfo ReadPort() {
        EthernetPortInfo info;
        EXPECT_TRUE(Perform(OperationCode::ReadEthernetPort, nullptr, &info).IsDone());
        return info;
    }

    EthernetPortStatistics Statistics(OperationCode code = OperationCode::ReadEthernetStatistics) {
        tavroapi::StatisticsFlag flag = 1;
        EthernetPortStatistics record;
        EXPECT_TRUE(Perform(code, &flag, &record).IsDone());
        return record;
    }

    Host host;
};

using Choices = std::map<std::int32_t, std::wstring>;

TEST_F(EthernetModel, ListSettingsTellTheirChoicesFromNumberOneOn) {
    EXPECT_EQ(ReadSettings().settings.at(14).choices, (Choices{{1, L"Disabled"}, {2, L"Enabled"}}));
    EXPECT_EQ(ReadSettings().settings.at(17).choices,
              (Choices{{1, L"1"}, {2, L"2"}, {3, L"4"}, {4, L"8"}}));
}

TEST_F(EthernetModel, RangeSettingsTellTheirBounds) {
    EXPECT_EQ(ReadSettings().settings.at(10).choices,
              (Choices{{64, L"min"}, {8, L"step"}, {4096, L"max"}}));
    EXPECT_EQ(ReadSettings().settings.at(25).choices,
              (Choices{{128, L"min"}, {16, L"step"}, {8192, L"max"}}));
}

TEST_F(EthernetModel, SettingsThatAreOnlyShownAndTheAddressHaveNoChoices) {
    for (const std::size_t number :
         {0U, 2U, 3U, 6U, 7U, 11U, 18U, 20U, 21U, 22U, 26U, 27U, 28U, 29U, 30U}) {
        EXPECT_TRUE(ReadSettings().settings.at(number).choices.empty()) << number;
    }
}

TEST_F(EthernetModel, NothingIsMarkedAsChangedWhenItIsRead) {
    for (const auto& setting : ReadSettings().settings) {
        EXPECT_EQ(setting.changed, "");
    }
}

TEST_F(EthernetModel, DefaultsAreValuesThatCanBeSet) {
    for (const std::size_t number :
         {1U, 8U, 15U, 14U, 4U, 5U, 16U, 9U, 17U, 10U, 25U, 12U, 23U, 24U, 19U, 13U}) {
        EXPECT_TRUE(Set(number, ValueOf(number)).IsDone()) << number;
    }
}

TEST_F(EthernetModel, MarkedValuesAreKept) {
    EXPECT_TRUE(Set(14, "Disabled").IsDone());
    EXPECT_TRUE(Set(10, "4096").IsDone());
    EXPECT_TRUE(Set(10, "64").IsDone());
    EXPECT_EQ(ValueOf(14), "Disabled");
    EXPECT_EQ(ValueOf(10), "64");
    EXPECT_EQ(ValueOf(25), "1024");
}

TEST_F(EthernetModel, ValuesWithoutAMarkAreIgnored) {
    AdapterSettings record = ReadSettings();
    record.settings.at(14).value = "Disabled";
    record.settings.at(0).value = "0";
    record.settings.at(2).value = "anything";
    EXPECT_TRUE(Perform(OperationCode::WriteAdapterSettings, &record, nullptr).IsDone());
    EXPECT_EQ(ValueOf(14), "Enabled");
    EXPECT_EQ(ValueOf(0), "Not Present");
    EXPECT_EQ(ValueOf(2), "MSI-X");
}

TEST_F(EthernetModel, ValuesThatDoNotFitAreRefusedWithAReason) {
    struct Refusal {
        std::size_t number;
        const char* value;
        const wchar_t* action;
        const wchar_t* allowed = L"";
    };
    constexpr const wchar_t* Choice = L"Set it to one of its choices.";
    constexpr const wchar_t* Buffers = L"Set it to a multiple of its step within its range.";
    constexpr const wchar_t* BufferRange = L", range 64 to 4096, step 8";
    constexpr const wchar_t* Address =
        L"Set it to 0, or to a locally administered unicast address such as 02-00-5E-00-00-01.";
    for (const auto& [number, value, action, allowed] : {
             Refusal{14, "disabled", Choice},
             Refusal{14, "", Choice},
             Refusal{10, "56", Buffers, BufferRange},
             Refusal{10, "4104", Buffers, BufferRange},
             Refusal{10, "65", Buffers, BufferRange},
             Refusal{10, "512 buffers", Buffers, BufferRange},
             Refusal{10, " 512", Buffers, BufferRange},
             Refusal{10, "", Buffers, BufferRange},
             Refusal{10, "-64", Buffers, BufferRange},
             Refusal{10, "99999999999", Buffers, BufferRange},
             Refusal{0, "", Address},
             Refusal{0, "Not Present", Address},
             Refusal{0, "01-00-5E-00-00-01", Address},
             Refusal{0, "00-00-5E-00-00-01", Address},
             Refusal{0, "02-00-5E-00-00", Address},
             Refusal{0, "02-00-5E-00-00-0G", Address},
             Refusal{0, "02-00-5E-00-00-01-02-03", Address},
         }) {
        const std::string before = ValueOf(number);
        const Outcome outcome = Set(number, value);
        EXPECT_EQ(outcome.status, 37440U) << value;
        ASSERT_TRUE(outcome.error.has_value());
        EXPECT_EQ(outcome.error->code, 37440U);
        EXPECT_EQ(outcome.error->message, L"The setting cannot have this value.");
        EXPECT_EQ(outcome.error->action, action);
        EXPECT_EQ(outcome.error->details,
                  L"setting " + std::to_wstring(number) + L", value \"" +
                      std::wstring(value, value + std::string(value).size()) + L"\"" + allowed);
        EXPECT_EQ(ValueOf(number), before);
    }
}

TEST_F(EthernetModel, FixedAndMissingSettingsCannotBeSet) {
    EXPECT_EQ(Set(2, "MSI").status, 37441U);
    Part().settings.emplace().flowControl = "NA";
    EXPECT_EQ(Set(8, "Disabled").status, 37442U);
    EXPECT_EQ(ValueOf(8), "NA");
}

TEST_F(EthernetModel, OneRefusedValueRefusesAll) {
    AdapterSettings record = ReadSettings();
    record.settings.at(1).value = "10 Gbps";
    record.settings.at(1).changed = "1";
    record.settings.at(25).value = "1";
    record.settings.at(25).changed = "1";
    EXPECT_FALSE(Perform(OperationCode::WriteAdapterSettings, &record, nullptr).IsDone());
    EXPECT_EQ(ValueOf(1), "Auto Negotiation");
}

TEST_F(EthernetModel, AnAssignedAddressIsTheCurrentOneUntilItIsTakenAway) {
    EXPECT_TRUE(Set(0, "06-00-5E-00-00-01").IsDone());
    EXPECT_EQ(ReadPort().NarrowText(ethernet_port::CurrentMac), "06-00-5E-00-00-01");
    EXPECT_EQ(ReadPort().NarrowText(ethernet_port::PermanentMac), EthernetMac);
    EXPECT_EQ(ReadPort().NarrowText(ethernet_port::LocallyAdministeredAddress),
              "06-00-5E-00-00-01");
    EXPECT_TRUE(Set(0, "0").IsDone());
    EXPECT_EQ(ReadPort().NarrowText(ethernet_port::CurrentMac), EthernetMac);
    EXPECT_EQ(ValueOf(0), "Not Present");
}

TEST_F(EthernetModel, ThePortShowsItsSettings) {
    EXPECT_EQ(ReadPort().NarrowText(ethernet_port::LinkSpeed), "10 Gbps");
    EXPECT_TRUE(Set(1, "1 Gbps").IsDone());
    EXPECT_TRUE(Set(9, "9014").IsDone());
    EXPECT_TRUE(Set(8, "Disabled").IsDone());
    EXPECT_EQ(ReadPort().NarrowText(ethernet_port::LinkSpeed), "1 Gbps");
    EXPECT_EQ(ReadPort().NarrowText(ethernet_port::LargestFrame), "9014");
    EXPECT_EQ(ReadPort().NarrowText(ethernet_port::FlowControl), "Disabled");
    EXPECT_EQ(ReadPort().wideText27, L"eth0");
}

TEST_F(EthernetModel, SerialNumberAndPlaceAreMadeUpUnlessTheHostFileTellsThem) {
    host.adapters[0].number = 2;
    host.adapters[0].ports[0].functions[0].number = 3;
    EXPECT_EQ(ReadPort().NarrowText(ethernet_port::SerialNumber), "TV10000003");
    EXPECT_EQ(ReadPort().NarrowText(ethernet_port::PciLocation), "bus 6, device 0, function 3");
    FunctionHardware& own = Part().hardware.emplace();
    own.serialNumber = "S";
    own.pciLocation = "P";
    EXPECT_EQ(ReadPort().NarrowText(ethernet_port::SerialNumber), "S");
    EXPECT_EQ(ReadPort().NarrowText(ethernet_port::PciLocation), "P");
}

TEST_F(EthernetModel, MissingSettingsLeaveThePortItsOwnValues) {
    EthernetSettings& settings = Part().settings.emplace();
    settings.speed = settings.jumboPacket = settings.locallyAdministeredAddress = "NA";
    EXPECT_EQ(ReadPort().NarrowText(ethernet_port::LinkSpeed), "10 Gbps");
    EXPECT_EQ(ReadPort().NarrowText(ethernet_port::LargestFrame), "1514");
    EXPECT_EQ(ReadPort().NarrowText(ethernet_port::CurrentMac), EthernetMac);
}

TEST_F(EthernetModel, CountersCountBetweenReadingsAndStartAnew) {
    EXPECT_EQ(Statistics().texts[tavroapi::ethernet_statistics::FramesReceived], "0");
    EXPECT_EQ(Statistics().texts[tavroapi::ethernet_statistics::FramesReceived], "264");
    EXPECT_EQ(Statistics().texts[tavroapi::ethernet_statistics::FramesReceived], "528");
    EXPECT_EQ(Statistics(OperationCode::ResetEthernetStatistics)
                  .texts[tavroapi::ethernet_statistics::FramesReceived],
              "0");
    EXPECT_EQ(Statistics().texts[tavroapi::ethernet_statistics::FramesReceived], "0");
    EXPECT_EQ(Statistics().texts[tavroapi::ethernet_statistics::FramesReceived], "264");
}

TEST_F(EthernetModel, WithoutALinkNothingIsCounted) {
    Part().hardware.emplace().linkStatus = "Down";
    Statistics();
    EXPECT_EQ(Statistics().texts[tavroapi::ethernet_statistics::FramesReceived], "0");
    EXPECT_EQ(ReadPort().NarrowText(ethernet_port::LinkSpeed), "None");
}

TEST_F(EthernetModel, CountersThatAreNotShownAreZero) {
    const auto texts = Statistics().texts;
    for (const std::size_t position : {5U, 7U, 9U, 11U, 13U, 15U, 30U, 31U}) {
        EXPECT_EQ(texts.at(position), "0");
    }
}

TEST_F(EthernetModel, TheExportIsTheSettings) {
    EXPECT_TRUE(Set(14, "Disabled").IsDone());
    AdapterSettings record;
    EXPECT_TRUE(Perform(OperationCode::ExportAdapterSettings, nullptr, &record).IsDone());
    EXPECT_EQ(record.settings.at(14).value, "Disabled");
}

TEST_F(EthernetModel, OnlyEthernetFunctionsAreKnown) {
    AdapterSettings settings;
    EthernetPortInfo info;
    EthernetPortStatistics statistics;
    tavroapi::StatisticsFlag flag = 1;
    for (const char* mac : {OtherMac, "02-00-5E-10-00-77", ""}) {
        for (const auto& [code, input, output] :
             std::initializer_list<std::tuple<OperationCode, void*, void*>>{
                 {OperationCode::ReadEthernetPort, nullptr, &info},
                 {OperationCode::ReadAdapterSettings, nullptr, &settings},
                 {OperationCode::WriteAdapterSettings, &settings, nullptr},
                 {OperationCode::ExportAdapterSettings, nullptr, &settings},
                 {OperationCode::ReadEthernetStatistics, &flag, &statistics},
                 {OperationCode::ResetEthernetStatistics, &flag, &statistics}}) {
            EXPECT_EQ(Perform(code, input, output, mac).status,
                      static_cast<std::uint32_t>(Status::UnknownIdentifier));
        }
    }
}

}  // namespace
}  // namespace tavrosim
