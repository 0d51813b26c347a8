#include "platform/linux/driver/linux_machine.h"

#include "keys/keyboard_shape.h"
#include "platform/background_queue.h"
#include "platform/main_queue.h"
#include "protocol/driver_helper.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace tamsel {

namespace {

constexpr mode_t readBit = 4;
constexpr mode_t readAndWriteBits = 6;

struct Node {
    NodeAccess access = NodeAccess::noNode;
    QString mode;
    QString group;
};

/// As a long directory listing writes it.
QString modeText(const QString& path, mode_t mode) {
    QString bits;
    for (int shift = 6; shift >= 0; shift -= 3) {
        bits += (mode >> shift & 4U) != 0 ? u'r' : u'-';
        bits += (mode >> shift & 2U) != 0 ? u'w' : u'-';
        bits += (mode >> shift & 1U) != 0 ? u'x' : u'-';
    }
    const QFileInfo info(path);
    return QStringLiteral("%1:%2 c%3").arg(info.owner(), info.group(), bits);
}

/// `isOther`: the access is that of another user, so that only modes and groups can tell.
Node look(const QString& path, mode_t wanted, const Groups& groups, bool isOther) {
    const QByteArray file = QFile::encodeName(path);
    struct stat info {};
    if (::stat(file.constData(), &info) != 0)
        return {};
    Node node{NodeAccess::ok, modeText(path, info.st_mode), QFileInfo(path).group()};
    const auto isGranted = [&] {
        const bool isMember = std::find(groups.granted.begin(), groups.granted.end(),
                                        info.st_gid) != groups.granted.end();
        return (info.st_mode & wanted) == wanted ||
               (isMember && (info.st_mode >> 3U & wanted) == wanted);
    };
    const int asked = wanted == readBit ? R_OK : R_OK | W_OK;
    if (isOther ? !isGranted() : ::access(file.constData(), asked) != 0)
        node.access = whyDenied(info.st_mode, info.st_gid, wanted, groups);
    return node;
}

/// The kernel's list of a device's keys: words in hexadecimal, the one with the highest codes
/// first.
bool hasKeyboardsKeys(const QString& list) {
    QFile file(list);
    const QList<QByteArray> words =
        file.open(QFile::ReadOnly) ? file.readLine().simplified().split(' ') : QList<QByteArray>();
    return isKeyboard([&words](unsigned code) {
        constexpr unsigned bits = sizeof(long) * 8;
        const qsizetype word = words.size() - 1 - static_cast<qsizetype>(code / bits);
        return word >= 0 && (words[word].toULongLong(nullptr, 16) >> code % bits & 1U) != 0;
    });
}

/// Of the devices together, told by one that stands in the way, or by the first.
Node lookAtInput(const QString& root, const Groups& groups, bool isOther) {
    const QString folder = root + QStringLiteral("/dev/input");
    const QStringList names =
        QDir(folder).entryList({QStringLiteral("event*")}, QDir::System | QDir::Files);
    std::vector<Node> nodes;
    std::vector<InputNodeAccess> rule;
    for (const QString& name : names) {
        nodes.push_back(look(folder + u'/' + name, readBit, groups, isOther));
        const QString keys =
            QStringLiteral("%1/sys/class/input/%2/device/capabilities/key").arg(root, name);
        rule.push_back({nodes.back().access, hasKeyboardsKeys(keys)});
    }
    const NodeAccess access = inputAccess(rule);
    const auto told = std::find_if(nodes.begin(), nodes.end(),
                                   [access](const Node& node) { return node.access == access; });
    return told == nodes.end() ? Node{} : *told;
}

QString ownName() {
    return QFileInfo(QStringLiteral("/proc/self")).owner();
}

} // namespace

LinuxMachine::LinuxMachine(BackgroundQueue& background, MainQueue& queue, UinputPlaces places)
    : m_background(background), m_queue(queue), m_places(std::move(places)) {}

void LinuxMachine::inspect(std::function<void(const MachineReport&)> done) {
    m_background.run([places = m_places, &queue = m_queue, self = QPointer<QObject>(this),
                      done = std::move(done)] {
        queue.async(nullptr, [self, report = inspectMachine(places), done] {
            if (self)
                done(report);
        });
    });
}

MachineReport inspectMachine(const UinputPlaces& places) {
    MachineReport report;
    report.hasUnit = places.daemonGroup.has_value();
    report.daemonUser = report.hasUnit ? *places.daemonGroup : ownName();
    report.helper = places.helper;
    const Groups groups =
        report.hasUnit ? Groups::ofUser(report.daemonUser.toStdString()) : Groups::current();

    const UinputState driver = readUinputState(places);
    report.kernelHasDriver = driver.isInKernel;
    const QString node = places.root + QLatin1String(driver::uinputNode);
    const Node uinput = look(node, readAndWriteBits, groups, report.hasUnit);
    report.uinput = !driver.isInKernel ? NodeAccess::noNode
                    : driver.hasAccess ? NodeAccess::ok
                                       : uinput.access;
    report.uinputMode = uinput.mode;

    const Node input = lookAtInput(places.root, groups, report.hasUnit);
    report.input = input.access;
    report.inputMode = input.mode;
    report.inputGroup = input.group;
    return report;
}

} // namespace tamsel
