#pragma once

#include "logic_fixture.h"

#include "feedback/feedback_vm.h"

namespace tamsel {

/// The feedback's client and model over a service that the test plays.
struct FeedbackFixture : LogicFixture {
    TicketAPI api{TicketOrigin("https://tickets.example"), http, defaults, queue, logger};
    std::unique_ptr<FeedbackVM> vm = std::make_unique<FeedbackVM>(api, clock, logger, TimeStyle{});

    static QByteArray list(const QStringList& titles) {
        QStringList items;
        for (const QString& title : titles)
            items << QStringLiteral(
                         R"({"uuid":"%1","category":"bug","title":"%1","status":"pending",
                                        "atime":"a","mtime":"m"})")
                         .arg(title);
        return R"({"_res":"ok","results":[)" + items.join(',').toUtf8() + "]}";
    }
    static QByteArray detail(const QByteArray& uuid, const QByteArray& comments = {}) {
        return R"({"_res":"ok","ticket":{"uuid":")" + uuid +
               R"(","category":"c","title":"t","content":"d","status":"s","atime":"a","mtime":"m",
                  "comments":[)" +
               comments + "]}}";
    }
    static QByteArray comment(const QByteArray& text, const QByteArray& by = "admin") {
        return R"({"id":"1","author_type":")" + by + R"(","author_id":"2","content":")" + text +
               R"(","atime":"a"})";
    }
    QString flags() const {
        QString text;
        for (const auto& [flag, name] : {std::pair{vm->isLoading(), 'L'},
                                         {vm->isSubmitting(), 'S'},
                                         {vm->isLoadingDetail(), 'D'},
                                         {vm->isAddingComment(), 'A'}})
            text += flag ? QChar(name) : QChar();
        return text.remove(QChar());
    }
    QStringList titles() const {
        QStringList titles;
        for (const TicketRow& row : vm->rows())
            titles << row.title;
        return titles;
    }
};

} // namespace tamsel
