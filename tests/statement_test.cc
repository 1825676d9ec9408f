/* Statements, procedures and scripts: whole texts with their layout, as a command and in a file. */
#include <gtest/gtest.h>

#include "emit/switch_writer.h"
#include "tests/translation.h"

namespace mtranslate {

namespace {

TEST(Statements, in_control_structures) {
    expect_translations(side_by_side(table("statements")));
    expect_translation("command", "", "");
}

TEST(Statements, keep_comments_that_stand_before_a_statement) {
    // the comments of a switch line stand before the switch, unless others do
    expect_translations(side_by_side(table("comments")));
    // without a line end at the end of the file, the last comment list is an earlier one
    expect_file_translation("% first\nx", "x;\n# first\n");
    expect_file_translation("x\n% cut off", "x;\n# cut off");
}

TEST(Procedures, have_their_layout) { expect_translations(side_by_side(table("procedures"))); }

TEST(Scripts, load_packages_in_a_file) {
    const Row row = side_by_side(table("packages")).front();
    expect_file_translation(row.source, row.expected);
}

TEST(Switches, are_numbered_over_all_runs) {
    StandInHost host;
    SwitchCounter = 41;
    for (const char *expected : {"switch_condition41 := x;\n", "switch_condition42 := x;\n"})
        EXPECT_EQ(host.translate("command", "switch x\nend"), expected);
    EXPECT_THROW(host.translate("command", "switch x\nend\nx = ("), HostError);
    EXPECT_EQ(host.translate("command", "switch x\nend"), "switch_condition43 := x;\n");
}

}  // namespace

}  // namespace mtranslate
