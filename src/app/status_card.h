#pragma once

#include <QObject>
#include <QString>

namespace tamsel {

/// One card of the dashboard; the texts are translated.
struct StatusCard {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(int tone READ toneCode)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString lead MEMBER lead)
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(QString button MEMBER button)
    Q_PROPERTY(bool primary MEMBER primary)

public:
    enum class Tone { neutral, warning, error, accent };

    QString id = {}; ///< which card it is
    Tone tone = Tone::warning;
    QString symbol = {}; ///< empty: something is under way
    QString title = {};
    QString lead = {};
    QString text = {};
    QString button = {}; ///< empty: the card has none
    bool primary = false;

    int toneCode() const { return int(tone); }

    bool operator==(const StatusCard&) const = default;
};

} // namespace tamsel
