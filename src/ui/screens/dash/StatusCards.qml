import QtQuick
import Tamsel

// The cards of what is at fault, in their order; no higher than nothing while all is well.
Column {
    id: cards

    required property DashboardVM dashboard

    spacing: 10
    bottomPadding: model.count > 0 ? 14 : 0

    GadgetListModel {
        id: model
        source: cards.dashboard
        list: "cards"
        key: "id"
    }
    Repeater {
        model: model

        StatusCardV {
            readonly property StatusCards owner: parent as StatusCards

            width: owner ? owner.width : 0
            onActed: owner.dashboard.act(row.id)
        }
    }
}
