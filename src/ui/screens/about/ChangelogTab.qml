import QtQuick
import Tamsel

// The change log: "## x" is a heading, "- x" a bullet, all else stands as it is.
TextView {
    id: tab

    required property AboutVM about

    function plain(text: string): string {
        return text.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/ {2}/g, " &nbsp;");
    }

    function laidOut(changelog: string): string {
        let html = "";
        for (const line of changelog.split("\n")) {
            if (line.startsWith("## "))
                html += "<p style='margin-top:%1px; margin-bottom:7px; font-size:14px; font-weight:600'>%2</p>"
                        .arg(html ? 18 : 0).arg(plain(line.slice(3)));
            else if (line.startsWith("- "))
                html += "<p style='margin-top:0px; margin-bottom:5px; margin-left:3px'>•&nbsp;&nbsp;%1</p>"
                        .arg(plain(line.slice(2)));
            else if (line.trim())
                html += "<p style='margin-top:0px; margin-bottom:5px'>%1</p>".arg(plain(line));
        }
        return html;
    }

    margin: 22
    label: qsTr("What's New")
    format: TextEdit.RichText
    text: laidOut(about.changelogText)
}
