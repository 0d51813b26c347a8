#include "ui/gadget_list_model.h"

#include <gmock/gmock.h>

#include <random>

namespace tamsel {

struct Fruit {
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(int weight MEMBER weight)

public:
    QString name;
    int weight = 0;

    bool operator==(const Fruit&) const = default;
};

class Basket final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QList<tamsel::Fruit> fruits READ fruits NOTIFY changed)

public:
    const QList<Fruit>& fruits() const { return m_fruits; }
    void set(const QList<Fruit>& fruits) {
        m_fruits = fruits;
        Q_EMIT changed();
    }
    /// Fruits by one-letter names, each of weight 1.
    void setNames(const QString& names) {
        QList<Fruit> fruits;
        for (const QChar name : names)
            fruits.append({name, 1});
        set(fruits);
    }

signals:
    void changed();

private:
    QList<Fruit> m_fruits;
};

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A view: keeps its own copy of the rows by the model's signals alone, and notes them.
struct View : QObject {
    explicit View(GadgetListModel& shown) : model(shown) {
        for (int row = 0; row < model.rowCount(); ++row)
            names.append(nameAt(row));
        connect(&model, &QAbstractItemModel::rowsInserted, this,
                [this](const QModelIndex&, int first, int last) {
                    note("insert", first, last);
                    for (int row = first; row <= last; ++row)
                        names.insert(row, nameAt(row));
                });
        connect(&model, &QAbstractItemModel::rowsRemoved, this,
                [this](const QModelIndex&, int first, int last) {
                    note("remove", first, last);
                    names.remove(first, last - first + 1);
                });
        connect(&model, &QAbstractItemModel::rowsMoved, this,
                [this](const QModelIndex&, int from, int, const QModelIndex&, int to) {
                    note("move", from, to);
                    names.move(from, to > from ? to - 1 : to);
                });
        connect(&model, &QAbstractItemModel::dataChanged, this,
                [this](const QModelIndex& from, const QModelIndex& to) {
                    note("change", from.row(), to.row());
                });
        connect(&model, &QAbstractItemModel::modelReset, this, [this] { events << "reset"; });
    }

    QString nameAt(int row) const {
        return model.data(model.index(row), GadgetListModel::FirstFieldRole).toString();
    }
    void note(const char* what, int first, int last) {
        events << QStringLiteral("%1 %2 %3").arg(QString::fromUtf8(what)).arg(first).arg(last);
    }

    GadgetListModel& model;
    QStringList names;
    QStringList events;
};

struct GadgetListModelTest : testing::Test {
    Basket basket;
    GadgetListModel model;

    GadgetListModelTest() {
        model.setSource(&basket);
        model.setList("fruits");
        model.setKey("name");
    }
};

TEST_F(GadgetListModelTest, TellsOnlyWhatChanged) {
    const struct {
        const char* before;
        const char* after;
        QStringList events;
    } cases[] = {
        {"abc", "abc", {}},
        {"", "abc", {"insert 0 2"}},
        {"abc", "", {"remove 0 2"}},
        {"abc", "xabc", {"insert 0 0"}},
        {"abc", "abcxy", {"insert 3 4"}},
        {"abc", "axybc", {"insert 1 2"}},
        {"abcd", "ad", {"remove 1 2"}},
        {"abcd", "bd", {"remove 2 2", "remove 0 0"}},
        {"abcd", "dabc", {"move 3 0"}},
        {"abcd", "bcda", {"move 0 4"}},
        {"abcde", "xeabc", {"remove 3 3", "move 3 0", "insert 0 0"}},
        {"abc", "xyz", {"remove 0 2", "insert 0 2"}},
    };
    for (const auto& c : cases) {
        basket.setNames(c.before);
        View view(model);
        basket.setNames(c.after);
        EXPECT_EQ(view.events, c.events) << c.before << " to " << c.after;
        EXPECT_EQ(view.names.join(""), c.after) << c.before;
    }
}

TEST_F(GadgetListModelTest, ChangesOneRowInPlace) {
    basket.set({{"a", 1}, {"b", 1}, {"c", 1}});
    View view(model);
    basket.set({{"a", 1}, {"b", 2}, {"c", 1}});
    EXPECT_THAT(view.events, ElementsAre("change 1 1"));
    EXPECT_EQ(model.data(model.index(1), GadgetListModel::FirstFieldRole + 1).toInt(), 2);
    EXPECT_EQ(model.data(model.index(1), GadgetListModel::RowRole).value<Fruit>().weight, 2);
    EXPECT_EQ(model.indexOf("c"), 2);
    EXPECT_EQ(model.indexOf("x"), -1);
}

TEST_F(GadgetListModelTest, NamesItsRolesAfterTheFieldsOfAnEmptyListToo) {
    EXPECT_THAT(model.roleNames().values(), testing::UnorderedElementsAre("row", "name", "weight"));
}

TEST_F(GadgetListModelTest, KeepsRowsWithEqualKeysApart) {
    basket.set({{"a", 1}, {"a", 2}, {"b", 1}});
    View view(model);
    basket.set({{"a", 1}, {"a", 3}, {"b", 1}});
    EXPECT_THAT(view.events, ElementsAre("change 1 1"));
    basket.set({{"a", 1}, {"b", 1}});
    EXPECT_EQ(view.names.join(""), "ab");
}

TEST_F(GadgetListModelTest, AnyShuffleEndsInTheNewOrder) {
    std::mt19937 random(7);
    const QString letters = "abcdefghijklmnopqrstuvwxyz";
    for (int round = 0; round < 300; ++round) {
        QString next = letters;
        const auto swaps = random() % 30;
        for (unsigned i = 0; i < swaps; ++i)
            std::swap(next[int(random() % 26)], next[int(random() % 26)]);
        next = next.mid(int(random() % 10), 1 + int(random() % 25));
        View view(model);
        basket.setNames(next);
        ASSERT_EQ(view.names.join(""), next);
        ASSERT_EQ(model.count(), next.size());
    }
}

TEST_F(GadgetListModelTest, IsEmptyOnceItsSourceIsGone) {
    auto other = std::make_unique<Basket>();
    other->setNames("abc");
    model.setSource(other.get());
    ASSERT_EQ(model.count(), 3);
    other.reset();
    EXPECT_EQ(model.count(), 0);
    EXPECT_EQ(model.source(), nullptr);
}

} // namespace
} // namespace tamsel

#include "gadget_list_model_test.moc"
