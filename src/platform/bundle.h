#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace tamsel {

/// The application's own files and identity. Read once at start, immutable; any thread.
class Bundle {
public:
    virtual ~Bundle() = default;

    /// A text of the information dictionary, such as "CFBundleVersion"; nothing when the key is
    /// missing or its value is no text.
    virtual std::optional<QString> infoString(const QString& key) const = 0;
    /// The path of a resource; type "app" names a companion program. Nothing when it isn't there.
    virtual std::optional<QString> pathForResource(const QString& name,
                                                   const QString& type) const = 0;
    /// The same for a resource in a subdirectory of the bundle's resources.
    virtual std::optional<QString> pathForResourceIn(const QString& subdirectory,
                                                     const QString& name,
                                                     const QString& type) const = 0;
    /// The languages that the bundle has texts in, such as "zh-Hant", in the user's order of
    /// preference; without those that the user does not know.
    virtual QStringList preferredLocalizations() const = 0;
    /// The user's languages as tags such as "zh-Hant-TW", best first.
    virtual QStringList preferredLanguages() const = 0;
};

} // namespace tamsel
