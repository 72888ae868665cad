// What may include what, read from the source tree as it is.

#include "structure/SourceTree.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const SourceTree& sources() {
    static const SourceTree tree = SourceTree::read(QStringLiteral(QUORVANE_SOURCE_DIR "/src"));
    return tree;
}

void expectNone(const QStringList& findings) {
    EXPECT_TRUE(findings.isEmpty()) << findings.join(u'\n').toStdString();
}

/// Two layers with a folder of their own each, and one that they share.
SourceTree twoLayers() {
    SourceTree tree;
    tree.add(u"CMakeLists.txt"_s, u"# (low before high)\n"
                                  "quorvane_library(low SOURCES\n    values/Value.cpp\n    shared/Names.cpp)\n"
                                  "quorvane_library(high SOURCES flows/Flow.cpp shared/Turns.cpp\n"
                                  "    LINKS low Qt6::Core PRIVATE_LINKS other)\n"_s);
    tree.add(u"tool/CMakeLists.txt"_s, u"add_executable(tool main.cpp)\ntarget_link_libraries(tool PRIVATE high)\n"_s);
    tree.add(u"values/Value.h"_s, u"#pragma once\n#include <QString>\n"_s);
    tree.add(u"values/Value.cpp"_s, u"#include \"values/Value.h\"\n"_s);
    tree.add(u"shared/Names.cpp"_s, u"#include \"shared/Plain.h\"\n"_s);
    tree.add(u"shared/Plain.h"_s, {});
    tree.add(u"shared/Turns.h"_s, {});
    tree.add(u"shared/Turns.cpp"_s, u"#include \"shared/Turns.h\"\n#include \"shared/Plain.h\"\n"_s);
    tree.add(u"flows/Flow.cpp"_s, u"#include \"shared/Turns.h\"\n#include \"values/Value.h\"\n"_s);
    tree.add(u"tool/main.cpp"_s, u"#include \"shared/Turns.h\"\n"_s);
    return tree;
}

} // namespace

// ---- The program

TEST(Layers, noFolderIncludesItselfByWayOfOthers) {
    expectNone(sources().folderCycles());
}

TEST(Layers, everyFileBelongsToOneTarget) {
    expectNone(sources().homelessFiles());
}

TEST(Layers, aFileIncludesOnlyWhatItsTargetLinks) {
    expectNone(sources().includesOfWhatIsNotLinked());
}

TEST(Layers, theSimulatorKnowsNothingOfTheProgram) {
    expectNone(sources().includesOutOf(u"simulator"_s, {u"json"_s}));
    expectNone(sources().includesOutOf(u"json"_s));
}

TEST(Layers, onlyProgramsNameTheSimulatedAdapters) {
    expectNone(sources().includesOf(u"platform/simulated"_s, {u"app"_s, u"rehearsal"_s}));
}

TEST(Layers, nothingIncludesTheRehearsal) {
    expectNone(sources().includesOf(u"rehearsal"_s));
}

TEST(Layers, theWholeTreeIsRead) {
    EXPECT_FALSE(sources().includesOf(u"core"_s).isEmpty());
    EXPECT_FALSE(sources().includesOutOf(u"startup/items"_s).isEmpty());
}

// ---- What is found in trees that are wrong

TEST(SourceTree, findsNothingInGoodLayers) {
    const SourceTree tree = twoLayers();
    expectNone(tree.folderCycles());
    expectNone(tree.homelessFiles());
    expectNone(tree.includesOfWhatIsNotLinked());
}

TEST(SourceTree, findsACycleOfFoldersFromEachOfThem) {
    SourceTree tree = twoLayers();
    tree.add(u"values/More.h"_s, u"#include \"shared/Plain.h\"\n"_s);
    tree.add(u"shared/Plain.h"_s, u"  #  include \"flows/Flow.h\"\n"_s);
    const QStringList cycles = tree.folderCycles();
    ASSERT_EQ(cycles.size(), 3);
    EXPECT_EQ(cycles[0], u"flows: flows/Flow.cpp includes shared/Turns.h; shared/Plain.h includes flows/Flow.h"_s);
    EXPECT_EQ(cycles[2], u"values: values/More.h includes shared/Plain.h; shared/Plain.h includes flows/Flow.h; "
                         "flows/Flow.cpp includes values/Value.h"_s);
}

TEST(SourceTree, aProgramsMainFileClosesNoCycle) {
    SourceTree tree = twoLayers();
    tree.add(u"tool/Part.h"_s, {});
    tree.add(u"shared/Turns.h"_s, u"#include \"tool/Part.h\"\n"_s);
    expectNone(tree.folderCycles());
}

TEST(SourceTree, findsFilesInNoTargetOrInTwoAndMissingOnes) {
    SourceTree tree = twoLayers();
    tree.add(u"flows/New.cpp"_s, u"#include \"flows/Gone.h\"\n"_s);
    tree.add(u"apart/Header.h"_s, {});
    tree.add(u"again/CMakeLists.txt"_s, u"quorvane_library(again SOURCES Again.cpp)\n"
                                        "add_executable(also WIN32 Again.cpp)\n"_s);
    tree.add(u"again/Again.h"_s, {});
    const QStringList expected{u"again/Again.h is in several targets: again, also"_s,
                               u"apart/Header.h is in no target"_s, u"flows/New.cpp is in no target"_s,
                               u"flows/New.cpp includes flows/Gone.h, which isn't there"_s};
    EXPECT_EQ(tree.homelessFiles(), expected);
}

TEST(SourceTree, findsAnIncludeThatGoesUpEvenWithinAFolder) {
    SourceTree tree = twoLayers();
    tree.add(u"shared/Plain.h"_s, u"#include \"shared/Turns.h\"\n"_s);
    const QStringList expected{u"shared/Plain.h includes shared/Turns.h: low doesn't link high"_s};
    EXPECT_EQ(tree.includesOfWhatIsNotLinked(), expected);
}

TEST(SourceTree, findsIncludesIntoAndOutOfAFolder) {
    const SourceTree tree = twoLayers();
    const QStringList byFlows{u"flows/Flow.cpp includes shared/Turns.h"_s};
    EXPECT_EQ(tree.includesOf(u"shared"_s, {u"tool"_s}), byFlows);
    const QStringList byTool{u"tool/main.cpp includes shared/Turns.h"_s};
    EXPECT_EQ(tree.includesOutOf(u"tool"_s), byTool);
    expectNone(tree.includesOf(u"values"_s, {u"flows"_s}));
    expectNone(tree.includesOutOf(u"shared"_s));
}

} // namespace quorvane
