import QtQuick
import Tamsel

// Lends one recorder to all the record buttons of a window: one of them records at a time.
QtObject {
    id: recording

    required property KeyRecorderVM recorder
    // The button that records, or null.
    property Item owner: null

    signal recorded(Item owner, int keyCode, var modifiers)

    function start(button: Item): void {
        recorder.cancel();
        owner = button;
        recorder.startCapture();
    }

    readonly property Connections results: Connections {
        property Item last: null

        target: recording.recorder
        // The record ends before its key is told.
        function onIsCapturingChanged(): void {
            if (recording.recorder.isCapturing)
                return;
            last = recording.owner;
            recording.owner = null;
        }
        function onRecorded(keyCode: int, modifiers: var): void {
            recording.recorded(last, keyCode, modifiers);
        }
    }
}
