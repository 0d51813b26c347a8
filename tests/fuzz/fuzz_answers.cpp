#include "feedback/feedback_rows.h"
#include "feedback/ticket_coding.h"
#include "platform/fake/fake_main_queue.h"

#include <cstdint>
#include <cstdlib>

/// Any bytes as each of the ticket service's answers, up to the rows on the screen.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tamsel;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    static FakeMainQueue queue;
    static const FakeClock clock(queue);
    if (const auto list = decodeResponse<TicketListResponse>(bytes)) {
        if (ticketRows(list->results, clock, {}).size() !=
            static_cast<qsizetype>(list->results.size()))
            std::abort();
    }
    if (const auto detail = decodeResponse<TicketDetailResponse>(bytes)) {
        static_cast<void>(ticketPage(detail->ticket));
        static_cast<void>(commentRows(detail->ticket.comments, clock, {}));
    }
    static_cast<void>(decodeResponse<TicketResponse>(bytes));
    static_cast<void>(decodeResponse<CommentResponse>(bytes));
    static_cast<void>(decodeResponse<ErrorResponse>(bytes));
    return 0;
}
