#include "editors/action_titles.h"

#include <QCoreApplication>

namespace tamsel {

namespace {

struct ActionTitles {
    Q_DECLARE_TR_FUNCTIONS(ActionTitles)
};

} // namespace

QString actionTitle(ActionType type) {
    switch (type) {
    case ActionType::command:
        return ActionTitles::tr("Command");
    case ActionType::keyPress:
        return ActionTitles::tr("Key Press");
    case ActionType::typeText:
        return ActionTitles::tr("Type Text");
    case ActionType::pasteClipboard:
        return ActionTitles::tr("Paste Clipboard");
    case ActionType::openURL:
        return ActionTitles::tr("Open URL");
    }
    return {};
}

} // namespace tamsel
