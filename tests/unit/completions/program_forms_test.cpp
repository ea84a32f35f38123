#include "completions/program_forms.h"

#include <gtest/gtest.h>

#include <array>

namespace completions {
namespace {

using tavro::AccessClass;
using tavro::Command;
using tavro::CommandCode;
using tavro::CommandForm;
using tavro::Decision;
namespace operand = tavro::operand;

Command Row(const CommandForm& form) {
    return {.code = CommandCode{2},
            .form = form,
            .access = AccessClass::Runs,
            .decidedBy = Decision::Always(),
            .handler = nullptr};
}

std::vector<std::string> FormsOf(const Command& row) {
    const std::array<const Command*, 1> rows = {&row};
    return ProgramForms(rows);
}

using Lines = std::vector<std::string>;

TEST(ProgramForms, KeywordsAndOperandsStandInOrder) {
    EXPECT_EQ(FormsOf(Row({"-isns", "-add", operand::IsnsServer})),
              Lines{"-isns -add <iSNS_Server_IP> -debug"});
}

TEST(ProgramForms, APortIsOfTheKindOfItsFamily) {
    EXPECT_EQ(FormsOf(Row({"-iscsi", operand::PortMac})), Lines{"-iscsi <MAC@iSCSI> -debug"});
    EXPECT_EQ(FormsOf(Row({"-ethernet", operand::PortMac})),
              Lines{"-ethernet <MAC@Ethernet> -debug"});
    EXPECT_EQ(FormsOf(Row({"-fcoe", operand::PortWwn, "-ping", operand::FcoeTarget})),
              Lines{"-fcoe <portWWN@FCoE> -ping <Target_Name> -debug"});
    EXPECT_EQ(FormsOf(Row({"-res", operand::PortMac})), Lines{"-res <MAC@any> -debug"});
}

TEST(ProgramForms, ARowWithTwoFormsHasTwoLines) {
    Command row = Row({"-set", operand::IPv4Family});
    row.otherForm = {"-set", operand::IPv6Family};
    EXPECT_EQ(FormsOf(row), (Lines{"-set -ipv4 -debug", "-set -ipv6 -debug"}));
}

TEST(ProgramForms, LoginOptionsMayComeAgain) {
    EXPECT_EQ(FormsOf(Row({"-set", operand::LoginOptions})),
              Lines{"-set -mp|-hd|-dd|-mutualchap|-onewaychap|-debug..."});
}

TEST(ProgramForms, TheDebugSwitchIsNotOfferedWhereItIsAWord) {
    EXPECT_EQ(FormsOf(Row({"-create", operand::VirtualPorts})), Lines{"-create <WWN>..."});
    EXPECT_EQ(FormsOf(Row({"-ping", tavro::Optional(operand::PingCountOption),
                           tavro::Optional(operand::PingCount)})),
              Lines{"-ping -pcount <Count>"});
    Command row = Row({"-get"});
    row.furtherWords = tavro::FurtherWords::Refused;
    EXPECT_EQ(FormsOf(row), Lines{"-get"});
}

TEST(ProgramForms, ARowThatNobodyTypesHasNoLine) {
    EXPECT_EQ(FormsOf(Row({})), Lines{});
}

}  // namespace
}  // namespace completions
