"""Feedback in the real window, over HTTPS to a stand-in service: a ticket is filed, answered by the
support side, read and replied to; by the keyboard alone, too, and while the service fails."""

import os
import sys
import threading
import time

import desktop
import harness
from desktop import WindowTest, focus_window, type_keys, type_text
from harness import wait_for_line, wait_until

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "tools"))
import ticket_service  # noqa: E402

PLACEHOLDER = "Type reply..."
LISTED = "[Feedback] 獲取到 "


class Feedback(WindowTest):
    def setUp(self):
        super().setUp()
        self.stand_in()
        folder = os.path.join(self.sandbox.folder, "service")
        os.mkdir(folder)
        self.service = ticket_service.Service(folder)
        threading.Thread(target=self.service.serve_forever, daemon=True).start()
        self.addCleanup(self.service.end)
        self.bundle = ticket_service.make_bundle(
            os.path.join(harness.BUILD, "share", "tamsel"), folder, self.service.origin)

    def start(self):
        super().start(TAMSEL_BUNDLE=self.bundle)
        type_keys("5", "f")
        self.window.find("push button", "New Feedback")
        wait_for_line(self.app, "✅ " + LISTED)

    def tickets(self):
        return self.service.tickets.everything()

    def row(self, title):
        """The list's entry of the ticket with this title."""
        return next((node.get_name() for node in self.window.all("list item")
                     if node.get_name().startswith(title + ", ")), None)

    def message(self, text):
        """Whether the conversation shows a message that says so."""
        return any(node.get_name().endswith(": " + text) for node in self.window.all("list item"))

    def says(self, text):
        wait_until(lambda: self.message(text), text)

    def test_a_ticket_and_its_conversation(self):
        self.start()
        self.window.find("label", "No feedback yet")
        self.window.press("push button", "New Feedback")
        # These letters choose tabs elsewhere; here they are text.
        type_text("wluk dl 5")
        desktop.act(self.window.find("push button", "Submit"))  # not without a description
        type_keys("Tab")
        type_text("One line")
        type_keys("Return")
        type_text("and another")
        self.window.press("radio button", "Question")
        self.window.press("push button", "Submit")
        self.window.find("label", "Thank you for your feedback!")
        wait_until(lambda: self.row("wluk dl 5"), "the list to show it")
        [ticket] = self.tickets()
        self.assertEqual((ticket["category"], ticket["title"], ticket["content"], ticket["app"]),
                         ("question", "wluk dl 5", "One line\nand another", "tamsel"))
        self.assertEqual(ticket["device"], self.sandbox.stored("TamselDeviceId"))
        self.assertRegex(self.row("wluk dl 5"), r", (Today|Yesterday) \d\d:\d\d, pending$")

        self.window.press("list item", self.row("wluk dl 5"))
        self.window.find("heading", "wluk dl 5")
        self.window.find("label", "One line\nand another")
        self.service.tickets.comment(ticket["uuid"], "admin", "support", "Which keyboard?")
        self.window.press("push button", "Refresh")
        self.says("Which keyboard?")
        self.window.find("label", "replied")
        self.window.focused("text", PLACEHOLDER)
        type_text("  The left one ")
        wait_until(lambda: self.row("wluk dl 5").endswith(", replied"), "the list to show it")
        self.window.press("push button", "Send")
        self.says("The left one")
        wait_until(lambda: self.row("wluk dl 5").endswith(", pending"), "the list to show it")
        self.assertEqual([comment["content"] for comment in
                          self.service.tickets.detail(ticket["uuid"])["comments"]],
                         ["Which keyboard?", "The left one"])
        for i in range(60):
            self.service.tickets.comment(ticket["uuid"], "admin", "support", f"line {i}")
        self.window.press("push button", "Refresh")
        self.says("line 59")
        self.assertFalse(self.message("line 0"))
        focus_window()
        wait_until(lambda: type_keys("Prior") or self.message("Which keyboard?"), "the beginning")

        # After a thank-you the next form is empty; what is begun then waits.
        self.window.press("push button", "New Feedback")
        self.window.focused("text", "Title")
        type_text("draft")
        self.window.press("list item", self.row("wluk dl 5"))
        self.window.press("push button", "New Feedback")
        self.assertEqual(self.window.find("text", "Title").get_text(0, 99), "draft")
        self.window.press("push button", "Cancel")
        self.window.press("push button", "New Feedback")
        self.assertEqual(self.window.find("text", "Title").get_text(0, 99), "")
        self.calm()

    def test_the_keyboard_alone_in_a_small_window(self):
        for title in ("First", "Second", "Third"):
            self.sandbox.put("DEVICE", "TamselDeviceId")
            self.service.tickets.file_ticket({"app": "tamsel", "device_id": "DEVICE",
                                              "category": "bug", "title": title, "content": "c"})
            time.sleep(0.005)
        self.start()
        window = focus_window()
        desktop.subprocess.run(["xdotool", "windowsize", "--sync", window, "820", "620"],
                               check=True)
        self.window.find("push button", "New Feedback").grab_focus()
        self.window.focused("push button", "New Feedback")
        type_keys("Tab", "Tab")
        self.window.focused("list item", self.row("Third"))
        type_keys("Down", "Down")
        self.window.focused("list item", self.row("First"))
        type_keys("Return")
        self.window.find("heading", "First")
        self.window.focused("text", PLACEHOLDER)
        self.assertIsNone(self.row("Third"), "one pane at a time")
        type_text("hi")
        type_keys("ctrl+Return")
        self.says("hi")
        type_keys("Escape")
        self.window.focused("list item", self.row("First"))
        self.window.find("push button", "New Feedback").grab_focus()
        type_keys("Return")
        self.window.focused("text", "Title")
        type_text("Fourth")
        type_keys("shift+Tab")
        self.window.focused("radio button", "Bug")
        type_keys("Right", "Right")
        self.window.focused("radio button", "Question")
        type_keys("Tab", "Tab")
        type_text("text")
        type_keys("ctrl+Return")
        self.window.find("label", "Thank you for your feedback!")
        self.window.focused("push button", "New Feedback")
        filed = [ticket for ticket in self.tickets() if ticket["title"] == "Fourth"]
        self.assertEqual([ticket["category"] for ticket in filed], ["question"])
        type_keys("Escape")
        wait_until(lambda: self.row("Fourth"), "the list")
        self.calm()

    def test_a_service_that_fails(self):
        self.start()
        origin, self.service.tickets.listed = self.service.tickets.listed, lambda *_: None
        self.window.press("push button", "Refresh")
        self.window.find("label", "Load Failed")
        self.service.tickets.listed = origin
        self.window.press("push button", "Try Again")
        self.window.gone("label", "Load Failed")
        self.window.press("push button", "New Feedback")
        type_text("kept")
        type_keys("Tab")
        type_text("kept too")
        self.service.end()
        self.window.press("push button", "Submit")
        self.window.find("label", "Submit Failed")
        self.assertEqual(self.window.find("text", "Title").get_text(0, 99), "kept")
        wait_for_line(self.app, "[Feedback] 提交失敗: Connection refused")
        self.calm()


if __name__ == "__main__":
    desktop.run_tests()
