#include "../support/hub_fixture.h"

#include "keytools/key_recorder_vm.h"
#include "keytools/key_viewer_vm.h"
#include "keytools/keyboard_shortcut_handler.h"

namespace tamsel {

namespace {
using Modifiers = KeyRecorderVM::Modifiers;
using namespace ModifierFlags;

constexpr std::uint16_t virtualA = 0;
constexpr std::uint16_t virtualReturn = 36;
constexpr std::uint16_t virtualEscape = 53;
constexpr std::uint16_t virtualLeftShift = 56;
constexpr std::uint16_t virtualLeftCommand = 55;
} // namespace

struct KeyRecorderTest : HubFixture {
    KeyRecorderVM plain{hub, local, queue, Modifiers::ignored};
    KeyRecorderVM chords{hub, local, queue, Modifiers::captured};
    std::vector<RecordedKey> results;

    void start(KeyRecorderVM& recorder) {
        recorder.startCapture([this](const RecordedKey& key) { results.push_back(key); });
        queue.runPending();
    }
    std::vector<RecordedKey> take() { return std::exchange(results, {}); }
    void expectIdle(const KeyRecorderVM& recorder) {
        EXPECT_FALSE(recorder.isCapturing());
        EXPECT_EQ(local.installed(), 0U);
        EXPECT_EQ(queue.pendingTimers(), 0U);
        EXPECT_FALSE(hub.hasSinks());
    }
};

TEST_F(KeyRecorderTest, RecordsAKeyWithTheModifiersHeld) {
    for (KeyRecorderVM* recorder : {&plain, &chords}) {
        start(*recorder);
        EXPECT_TRUE(recorder->isCapturing());
        EXPECT_TRUE(recorder->isDaemonConnected());
        const std::uint32_t both = leftShift | leftCommand;
        EXPECT_TRUE(local.flagsChanged(virtualLeftCommand, leftCommand));
        EXPECT_TRUE(local.flagsChanged(virtualLeftShift, both));
        EXPECT_TRUE(local.flagsChanged(60, both | rightShift)); // down and up again
        EXPECT_TRUE(local.flagsChanged(60, both));
        EXPECT_TRUE(local.keyUp(virtualReturn)) << "of the press that started the record";
        EXPECT_TRUE(local.send({LocalKeyKind::keyDown, {}, virtualReturn, both, true}));
        EXPECT_TRUE(local.send({LocalKeyKind::keyDown, LocalKeyEvent::CodeKind::hidUsage, 0}));
        EXPECT_TRUE(take().empty());
        EXPECT_TRUE(local.keyDown(virtualA));
        const QStringList held{"left_shift", "left_command"};
        EXPECT_EQ(take(),
                  (std::vector{RecordedKey{4, recorder == &chords ? held : QStringList()}}));
        expectIdle(*recorder);
        EXPECT_FALSE(local.keyUp(virtualA));
        EXPECT_FALSE(local.keyDown(virtualA));
    }
    start(chords); // what was held before is forgotten
    local.flagsChanged(57, capsLock);
    EXPECT_EQ(take(), (std::vector{RecordedKey{57, {}}})) << "Caps Lock is a key like others";
    start(chords);
    local.send({LocalKeyKind::flagsChanged, LocalKeyEvent::CodeKind::hidUsage, 255, fn});
    local.send({LocalKeyKind::keyDown, LocalKeyEvent::CodeKind::hidUsage, 73});
    EXPECT_EQ(take(), (std::vector{RecordedKey{73, {"fn"}}}));
}

TEST_F(KeyRecorderTest, ACancelledRecordCallsNothing) {
    const std::pair<const char*, std::function<void()>> ways[] = {
        {"Escape", [&] { EXPECT_TRUE(local.keyDown(virtualEscape)); }},
        {"button", [&] { chords.cancel(); }},
        {"ten seconds with modifiers alone", [&] {
             queue.advance(Milliseconds(6000));
             local.flagsChanged(virtualLeftShift, leftShift);
             queue.advance(Milliseconds(3999));
             EXPECT_TRUE(chords.isCapturing());
             queue.advance(Milliseconds(1));
         }}};
    for (const auto& [name, cancel] : ways) {
        SCOPED_TRACE(name);
        start(chords);
        cancel();
        expectIdle(chords);
    }
    {
        KeyRecorderVM dying(hub, local, queue, Modifiers::ignored);
        start(dying);
    }
    expectIdle(plain);
    EXPECT_TRUE(take().empty());
}

TEST_F(KeyRecorderTest, TakesMouseButtonsFromTheDaemonAndNothingElse) {
    start(plain);
    report({4, true, 0, 4, false});
    report({0x1002, false, 0, 0x1002, false});
    EXPECT_TRUE(take().empty());
    report({0x1002, true, 0, 0x1002, false});
    EXPECT_EQ(take(), (std::vector{RecordedKey{0x1002, {}}}));

    refuse();
    start(plain);
    EXPECT_FALSE(plain.isDaemonConnected());
    local.keyDown(virtualA); // also seen by the hub's monitor, whose report comes too late
    queue.runPending();
    EXPECT_EQ(take().size(), 1U);
    expectIdle(plain);
}

TEST_F(KeyRecorderTest, TellsQmlOnceTheRecordHasEnded) {
    QStringList heard;
    QObject::connect(&chords, &KeyRecorderVM::recorded,
                     [&](quint32 code, const QStringList& modifiers) {
                         EXPECT_FALSE(chords.isCapturing());
                         heard << QString::number(code) << modifiers;
                     });
    chords.startCapture();
    chords.startCapture();
    start(chords); // neither restarts the running one
    EXPECT_EQ(queue.pendingTimers(), 1U);
    EXPECT_EQ(local.installed(), 1U);
    local.flagsChanged(virtualLeftShift, leftShift);
    local.keyDown(virtualA);
    EXPECT_EQ(heard, (QStringList{"4", "left_shift"}));
    EXPECT_TRUE(take().empty());
    expectIdle(chords);
}

struct KeyViewerTest : HubFixture {
    KeyViewerVM viewer{hub, clock};
};

TEST_F(KeyViewerTest, ShowsWhatTheDaemonDid) {
    viewer.start();
    viewer.start();
    queue.runPending();
    EXPECT_TRUE(viewer.isDaemonConnected());
    clock.wallTime += std::chrono::seconds(5);
    struct Case {
        KeyEvent event;
        QStringList row; ///< type, key, action, output
    };
    for (const Case& c : std::initializer_list<Case>{
             {{4, true, 0, 4, true}, {"down", "a", "passthrough", "a"}},
             {{4, false, 1, 4, false}, {"up", "a", "suppress", ""}},
             {{57, true, 2, 224, false}, {"down", "caps_lock", "remap", "left_control"}},
             {{57, true, 2, 57, false}, {"down", "caps_lock", "remap", "caps_lock"}},
             {{58, true, 3, 0xA5, false}, {"down", "f1", "media", "unknown (0xA5)"}},
             {{4, true, 9, 4, false}, {"down", "a", "", "a"}}}) {
        report(c.event);
        ASSERT_EQ(viewer.events().size(), 1) << "registered once";
        const KeyViewerEvent& row = viewer.events().front();
        EXPECT_EQ((QStringList{row.eventType, row.keyName, row.actionName, row.outputName}), c.row);
        EXPECT_EQ(row.fromApple, c.event.fromApple);
        EXPECT_EQ(row.keyDown, c.event.keyDown);
        EXPECT_EQ(row.action, c.event.action);
        EXPECT_EQ(row.timestamp.toMSecsSinceEpoch(), 5000);
        viewer.clear();
    }
}

TEST_F(KeyViewerTest, KeepsTheThirtyNewestUntilItStops) {
    viewer.start();
    queue.runPending();
    std::set<QString> ids;
    for (std::uint32_t usage = 4; usage < 35; ++usage) {
        report({usage, true, 0, usage, false});
        ids.insert(viewer.events().back().id);
    }
    EXPECT_EQ(ids.size(), 31U);
    ASSERT_EQ(viewer.events().size(), 30);
    EXPECT_EQ(viewer.events().front().keyName, "b");
    EXPECT_EQ(viewer.events().back().keyName, "5");

    KeyViewerVM second(hub, clock);
    second.start();
    EXPECT_TRUE(second.isDaemonConnected()) << "at once";
    second.stop();
    viewer.stop();
    viewer.stop();
    EXPECT_TRUE(viewer.events().isEmpty());
    EXPECT_FALSE(hub.hasSinks());
    {
        KeyViewerVM dying(hub, clock);
        dying.start();
    }
    EXPECT_FALSE(hub.hasSinks());
}

TEST(KeyboardShortcutHandlerTest, AnswersItsKeysWhereNothingElseWantsThem) {
    FakeLocalEvents local;
    QString ran;
    KeyboardShortcutHandler handler(local,
                                    {{u'2', [&] { ran += u'2'; }}, {u'a', [&] { ran += u'a'; }}});
    const auto press = [&](const QString& text, FocusKind focus, std::uint32_t flags = 0,
                           bool repeat = false) {
        ran.clear();
        return local.send({LocalKeyKind::keyDown, {}, 0, flags, repeat, focus, text});
    };
    EXPECT_FALSE(press("2", FocusKind::other)) << "not shown yet";
    handler.install();
    handler.install();
    EXPECT_EQ(local.installed(), 1U);
    struct Case {
        QString text;
        FocusKind focus;
        std::uint32_t flags;
        QString action; ///< empty: the key is passed on
    };
    for (const Case& c : std::initializer_list<Case>{{"2", FocusKind::other, 0, "2"},
                                                     {"2", FocusKind::none, 0, "2"},
                                                     {"A", FocusKind::other, shift | fn, "a"},
                                                     {"2", FocusKind::textInput, 0, ""},
                                                     {"2", FocusKind::popup, 0, ""},
                                                     {"2", FocusKind::other, command, ""},
                                                     {"2", FocusKind::other, control, ""},
                                                     {"2", FocusKind::other, option, ""},
                                                     {"3", FocusKind::other, 0, ""},
                                                     {"", FocusKind::other, 0, ""}}) {
        EXPECT_EQ(press(c.text, c.focus, c.flags), !c.action.isEmpty()) << c.text.toStdString();
        EXPECT_EQ(ran, c.action);
    }
    EXPECT_TRUE(press("a", FocusKind::other, 0, true));
    EXPECT_EQ(ran, QString()) << "a held key acts once";
    EXPECT_FALSE(local.keyUp(0));
    handler.remove();
    EXPECT_EQ(local.installed(), 0U);
}

} // namespace tamsel
