#pragma once

#include "platform/pasteboard.h"
#include "platform/system_log.h"
#include "platform/user_defaults.h"
#include "platform/workspace.h"

#include <QList>
#include <QMap>
#include <QStringList>

#include <mutex>

namespace tamsel {

class FakeSystemLog final : public SystemLog {
public:
    struct Line {
        SystemLogType type;
        QString text;
        bool operator==(const Line&) const = default;
    };

    bool infoEnabled = true;
    QList<Line> lines;

    bool isEnabled(SystemLogType type) const override {
        return infoEnabled || type != SystemLogType::info;
    }
    void write(SystemLogType type, const QString& line) override {
        const std::lock_guard lock(m_mutex);
        lines.append({type, line});
    }
    /// The lines without their times ("[HH:mm:ss] "), and forgets them.
    QStringList take() {
        QStringList out;
        for (const Line& line : std::exchange(lines, {}))
            out << line.text.mid(11);
        return out;
    }

private:
    std::mutex m_mutex;
};

/// Keeps values in memory; `failure` makes every call fail.
class FakeUserDefaults final : public UserDefaults {
public:
    QMap<QString, QByteArray> values;
    std::optional<Error> failure;
    std::optional<int> writesLeft; ///< of a program that dies: what it writes later is lost

    Result<std::optional<QByteArray>> dataForKey(const QString& key) override {
        if (failure)
            return tl::unexpected(*failure);
        const auto found = values.constFind(key);
        return found == values.constEnd() ? std::nullopt : std::optional(*found);
    }
    Result<void> setData(const QByteArray& value, const QString& key) override {
        if (failure)
            return tl::unexpected(*failure);
        if (writesLeft && (*writesLeft)-- <= 0)
            return {};
        values[key] = value;
        return {};
    }
    Result<void> setString(const QString& value, const QString& key) override {
        return setData(value.toUtf8(), key);
    }
    Result<void> setBool(bool value, const QString& key) override {
        return setData(QByteArray::number(int(value)), key);
    }
    Result<bool> contains(const QString& key) override {
        if (failure)
            return tl::unexpected(*failure);
        return values.contains(key);
    }
};

class FakePasteboard final : public Pasteboard {
public:
    std::optional<QString> contents;
    int clears = 0;

    void readText(TextHandler done) override { done(contents); }
    void clearContents() override {
        ++clears;
        contents.reset();
    }
    void setString(const QString& text) override { contents = text; }
};

/// Records what is opened; the test answers through `pending`.
class FakeWorkspace final : public Workspace {
public:
    QList<QUrl> opened;
    QList<std::function<void(Result<void>)>> pending;

    void openURL(const QUrl& url, std::function<void(Result<void>)> done) override {
        opened.append(url);
        pending.append(std::move(done));
    }
};

} // namespace tamsel
