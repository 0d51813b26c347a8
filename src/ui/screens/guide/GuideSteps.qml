import QtQuick
import Tamsel

// What there is to do, in order.
Column {
    id: steps

    required property SettingsGuideVM guide

    readonly property int count: model.count

    spacing: 12

    GadgetListModel {
        id: model
        source: steps.guide
        list: "steps"
        key: "id"
    }
    Repeater {
        model: model

        GuideStepRow {
            readonly property GuideSteps owner: parent as GuideSteps

            width: owner ? owner.width : 0
            onCopied: owner.guide.copy(row.id)
        }
    }
}
