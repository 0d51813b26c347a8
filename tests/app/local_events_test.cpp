#include "platform/linux/keys/qt_local_events.h"

#include "platform/linux/keys/focus_kind.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QWindow>

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

namespace tamsel {

namespace {

using namespace ModifierFlags;
using Verdict = LocalEvents::Verdict;
constexpr auto none = Qt::NoModifier;

/// Counts what gets through the filter.
struct Window final : QWindow {
    int keys = 0;
    int overrides = 0;

    void keyPressEvent(QKeyEvent*) override { ++keys; }
    void keyReleaseEvent(QKeyEvent*) override { ++keys; }
    bool event(QEvent* event) override {
        overrides += event->type() == QEvent::ShortcutOverride;
        return QWindow::event(event);
    }
};

struct Key {
    int code; ///< the kernel's; 0 for an event that a program makes
    int key;
    QString text = {};
};
const Key a{KEY_A, Qt::Key_A, QStringLiteral("a")};
const Key leftShiftKey{KEY_LEFTSHIFT, Qt::Key_Shift};
const Key rightShiftKey{KEY_RIGHTSHIFT, Qt::Key_Shift};

enum class Repeat { no, yes };

} // namespace

struct LocalEventsTest : testing::Test {
    QtLocalEvents events{*qGuiApp};
    Window window;
    QList<LocalKeyEvent> seen;
    Verdict verdict = Verdict::pass;
    std::unique_ptr<LocalEventMonitor> monitor =
        events.addMonitor(allLocalKeyKinds, [this](const LocalKeyEvent& event) {
            seen << event;
            return verdict;
        });

    /// As the toolkit does: offers a press to shortcuts first, and drops it when one takes it.
    bool send(QEvent::Type type, const Key& key, Qt::KeyboardModifiers modifiers = none,
              Repeat repeat = Repeat::no) {
        const auto make = [&](QEvent::Type kind) {
            return QKeyEvent(kind, key.key, modifiers, key.code ? quint32(key.code) + 8 : 0, 0, 0,
                             key.text, repeat == Repeat::yes);
        };
        QKeyEvent offer = make(QEvent::ShortcutOverride);
        offer.ignore();
        if (type == QEvent::KeyPress)
            QCoreApplication::sendEvent(&window, &offer);
        QKeyEvent event = make(type);
        const int before = window.keys;
        QCoreApplication::sendEvent(&window, &event);
        const bool swallowed = window.keys == before;
        EXPECT_TRUE(type == QEvent::KeyRelease || offer.isAccepted() == swallowed);
        return swallowed;
    }
    bool press(const Key& key, Qt::KeyboardModifiers modifiers = none, Repeat repeat = Repeat::no) {
        return send(QEvent::KeyPress, key, modifiers, repeat);
    }
    bool release(const Key& key, Qt::KeyboardModifiers modifiers = none,
                 Repeat repeat = Repeat::no) {
        return send(QEvent::KeyRelease, key, modifiers, repeat);
    }
    /// The one event that the monitor was asked about.
    LocalKeyEvent only() {
        EXPECT_EQ(seen.size(), 1);
        return std::exchange(seen, {}).value(0);
    }
};

TEST_F(LocalEventsTest, TellsKeysApart) {
    using enum LocalKeyEvent::CodeKind;
    const auto expect = [&](const Key& key, Qt::KeyboardModifiers modifiers,
                            LocalKeyEvent::CodeKind codeKind, int code, const QString& characters) {
        SCOPED_TRACE(key.key);
        EXPECT_FALSE(press(key, modifiers));
        const LocalKeyEvent event = only();
        EXPECT_EQ(event.kind, LocalKeyKind::keyDown);
        EXPECT_EQ(event.codeKind, codeKind);
        EXPECT_EQ(event.keyCode, code);
        EXPECT_EQ(event.charactersIgnoringModifiers, characters);
        EXPECT_FALSE(release(key, modifiers));
        EXPECT_EQ(only().kind, LocalKeyKind::keyUp);
    };
    expect({KEY_A, Qt::Key_Q, "q"}, none, virtualKey, 0, "q"); // on a French layout
    expect({KEY_A, Qt::Key_A, "A"}, none, virtualKey, 0, "a"); // Caps Lock
    expect({KEY_A, Qt::Key_A, "A"}, Qt::ShiftModifier, virtualKey, 0, "A");
    expect({KEY_A, Qt::Key_A, "\x01"}, Qt::ControlModifier, virtualKey, 0, "a");
    expect({KEY_1, Qt::Key_Exclam, "!"}, Qt::ShiftModifier, virtualKey, 18, "!");
    expect({KEY_INSERT, Qt::Key_Insert}, none, hidUsage, 73, "");
    expect({KEY_PLAYPAUSE, Qt::Key_MediaPlay}, none, hidUsage, 0, "");
    expect({0, Qt::Key_9, "9"}, none, virtualKey, 25, "9");
    expect({0, Qt::Key_F13}, none, hidUsage, 104, "");
    expect({0, Qt::Key_Escape}, none, virtualKey, 53, "");
}

TEST_F(LocalEventsTest, FollowsModifiersBySide) {
    constexpr auto down = QEvent::KeyPress;
    constexpr auto up = QEvent::KeyRelease;
    // `modifiers` as the toolkit reports them, `flags` as the monitor gets them.
    const auto step = [&](QEvent::Type type, const Key& key, Qt::KeyboardModifiers modifiers,
                          int code, std::uint32_t flags) {
        EXPECT_FALSE(send(type, key, modifiers));
        const LocalKeyEvent event = only();
        const bool isA = key.code == KEY_A;
        EXPECT_EQ(event.kind, isA ? LocalKeyKind::keyDown : LocalKeyKind::flagsChanged);
        EXPECT_EQ(event.keyCode, code);
        EXPECT_EQ(event.modifierFlags, flags) << code;
        EXPECT_EQ(event.charactersIgnoringModifiers.isEmpty(), !isA);
    };
    const Key altWithShift{KEY_LEFTALT, Qt::Key_Meta};
    const Key altGr{KEY_RIGHTALT, Qt::Key_AltGr};
    const Key caps{KEY_CAPSLOCK, Qt::Key_CapsLock};
    const Key super{KEY_RIGHTMETA, Qt::Key_Meta};
    const Key program{0, Qt::Key_Control};
    const Key function{KEY_FN, Qt::Key_unknown};
    const auto leftOnly = shift | leftShift;
    const auto shiftAndAlt = leftOnly | option | leftOption;
    step(down, leftShiftKey, Qt::ShiftModifier, 56, leftOnly);
    step(down, rightShiftKey, Qt::ShiftModifier, 60, leftOnly | rightShift);
    step(up, rightShiftKey, none, 60, leftOnly); // reads as if no Shift were held
    step(down, altWithShift, Qt::ShiftModifier | Qt::AltModifier, 58, shiftAndAlt);
    step(down, a, Qt::ShiftModifier | Qt::AltModifier, 0, shiftAndAlt);
    step(up, leftShiftKey, Qt::AltModifier, 56, option | leftOption);
    step(up, altWithShift, none, 58, 0);
    step(down, altGr, none, 61, option | rightOption);
    step(down, a, none, 0, option | rightOption);
    step(up, altGr, none, 61, 0);
    step(down, caps, none, 57, capsLock);
    step(up, caps, none, 57, 0);
    step(down, super, Qt::MetaModifier, 54, command | rightCommand);
    step(up, super, Qt::MetaModifier, 54, 0); // reads as if it were still held
    step(down, function, none, 255, fn);
    step(up, function, none, 255, 0);
    step(down, a, Qt::ControlModifier, 0, control); // held since another window had the keyboard
    step(down, program, Qt::ControlModifier, 59, control | leftControl);
    step(up, program, none, 59, 0);
}

TEST_F(LocalEventsTest, AModifierReleasedUnseenDoesNotStick) {
    for (const bool focusLeaves : {true, false}) {
        press(leftShiftKey, Qt::ShiftModifier);
        seen.clear();
        if (focusLeaves) {
            Q_EMIT qGuiApp->focusWindowChanged(nullptr);
            const LocalKeyEvent released = only();
            EXPECT_EQ(released.keyCode, 56);
            EXPECT_EQ(released.modifierFlags, 0U);
            press(a);
        } else {
            press(a);
            ASSERT_EQ(seen.size(), 2);
            EXPECT_EQ(seen.front().kind, LocalKeyKind::flagsChanged);
            seen.removeFirst();
        }
        EXPECT_EQ(only().modifierFlags, 0U);
    }
}

TEST_F(LocalEventsTest, SwallowedKeysReachNeitherWindowNorShortcuts) {
    verdict = Verdict::swallow;
    EXPECT_TRUE(press(a)); // send() looks at the override
    EXPECT_TRUE(press(leftShiftKey, Qt::ShiftModifier));
    EXPECT_EQ(seen.size(), 2) << "asked once an event";
    // Whoever swallowed it may be gone, the window have lost the keyboard for a while: it stays so.
    verdict = Verdict::pass;
    Q_EMIT qGuiApp->focusWindowChanged(nullptr);
    seen.clear();
    EXPECT_TRUE(release(a, none, Repeat::yes));
    EXPECT_TRUE(press(a, none, Repeat::yes));
    EXPECT_EQ(seen.size(), 0) << "of a swallowed press nothing is told";
    EXPECT_TRUE(release(a));
    EXPECT_EQ(only().kind, LocalKeyKind::keyUp);
    EXPECT_EQ(window.overrides, 0);
    // A key that was passed on can be swallowed from a repetition on.
    EXPECT_FALSE(press(a));
    EXPECT_FALSE(release(a, none, Repeat::yes));
    verdict = Verdict::swallow;
    EXPECT_TRUE(press(a, none, Repeat::yes));
    EXPECT_TRUE(seen.back().isARepeat);
    verdict = Verdict::pass;
    EXPECT_TRUE(press(a, none, Repeat::yes));
    EXPECT_TRUE(release(a));
    EXPECT_FALSE(press(a));

    // The toolkit misses a repetition when its press arrives late: then it is told by its time.
    verdict = Verdict::swallow;
    const auto at = [&](QEvent::Type type, quint64 timestamp) {
        QKeyEvent event(type, Qt::Key_C, none, KEY_C + 8, 0, 0);
        event.setTimestamp(timestamp);
        const int before = window.keys;
        QCoreApplication::sendEvent(&window, &event);
        return window.keys == before;
    };
    EXPECT_TRUE(at(QEvent::KeyPress, 5));
    verdict = Verdict::pass;
    EXPECT_TRUE(at(QEvent::KeyRelease, 500));
    EXPECT_TRUE(at(QEvent::KeyPress, 500));
    EXPECT_TRUE(at(QEvent::KeyRelease, 540));
    EXPECT_FALSE(at(QEvent::KeyPress, 541));
    EXPECT_FALSE(at(QEvent::KeyRelease, 580));
    EXPECT_FALSE(at(QEvent::KeyPress, 580));
    EXPECT_TRUE(seen.back().isARepeat);

    // A press that comes without having been offered to shortcuts is asked about as well.
    verdict = Verdict::swallow;
    QKeyEvent bare(QEvent::KeyPress, Qt::Key_B, none, KEY_B + 8, 0, 0);
    QCoreApplication::sendEvent(&window, &bare);
    EXPECT_EQ(seen.back().keyCode, 11);
    QObject item; // what a window hands on is not asked about again
    const auto asked = seen.size();
    QCoreApplication::sendEvent(&item, &bare);
    EXPECT_EQ(seen.size(), asked);
}

TEST_F(LocalEventsTest, MonitorsAreAskedNewestFirstAndMayComeAndGoMeanwhile) {
    QString order;
    std::unique_ptr<LocalEventMonitor> second;
    std::unique_ptr<LocalEventMonitor> third;
    std::unique_ptr<LocalEventMonitor> fourth;
    const auto note = [&](QChar name, Verdict answer) {
        return [&order, name, answer](const LocalKeyEvent&) {
            order += name;
            return answer;
        };
    };
    second = events.addMonitor(LocalKeyKind::keyDown, note(u'2', Verdict::pass));
    third = events.addMonitor(allLocalKeyKinds, [&](const LocalKeyEvent&) {
        order += u'3';
        second.reset();
        fourth = events.addMonitor(LocalKeyKind::keyUp, note(u'4', Verdict::swallow));
        third.reset(); // itself
        return Verdict::pass;
    });
    EXPECT_FALSE(press(a));
    EXPECT_EQ(order, "3");
    EXPECT_EQ(seen.size(), 1);
    EXPECT_TRUE(release(a));
    EXPECT_EQ(order, "34");
    EXPECT_EQ(seen.size(), 1) << "an older one is not asked about a swallowed event";
    fourth.reset();
    monitor.reset();
    EXPECT_FALSE(press(a));
    EXPECT_EQ(seen.size(), 1);
}

TEST(FocusKindTest, TextPopupsAndDialogsAreToldFromTheRest) {
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData(R"(
        import QtQuick
        import QtQuick.Templates as T
        Window {
            Item { objectName: "item"; focus: true }
            TextInput { objectName: "input" }
            TextEdit { objectName: "readOnly"; readOnly: true }
            Item { objectName: "area"; property bool capturesText: true }
            T.Popup { objectName: "menu"; focus: true; contentItem: Item { focus: true } }
            T.Popup { objectName: "field"; focus: true; contentItem: TextInput { focus: true } }
            T.ToolTip { objectName: "tip" }
            T.Dialog { objectName: "dialog"; modal: true; focus: false }
        })",
                      {});
    const std::unique_ptr<QObject> root(component.create());
    auto* const window = qobject_cast<QQuickWindow*>(root.get());
    ASSERT_NE(window, nullptr) << component.errorString().toStdString();
    window->show();
    window->requestActivate();
    QCoreApplication::processEvents();
    std::vector<FocusKind> kinds;
    for (const char* name :
         {"item", "input", "readOnly", "area", "item", "tip", "menu", "field", "dialog"}) {
        auto* const object = window->findChild<QObject*>(QLatin1String(name));
        ASSERT_NE(object, nullptr);
        auto* const item = qobject_cast<QQuickItem*>(object);
        if (item)
            item->forceActiveFocus();
        else
            QMetaObject::invokeMethod(object, "open");
        kinds.push_back(focusKindIn(*window));
        if (!item)
            QMetaObject::invokeMethod(object, "close");
        EXPECT_TRUE(item || focusKindIn(*window) == FocusKind::other) << name << " closed";
    }
    using enum FocusKind;
    EXPECT_EQ(kinds, (std::vector{other, textInput, textInput, textInput, other, other, popup,
                                  textInput, popup}));
    const QWindow plain;
    EXPECT_EQ(focusKindIn(plain), FocusKind::other);
}

} // namespace tamsel
