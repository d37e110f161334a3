// Firmware variables and the firmware event log.
//
// SET_VARIABLE (word at 4: variable number, word at 8: new value) stores
// one of the firmware's tunable variables and answers the value it replaces
// in the word at 12. The event log keeps the latest kEventLogEntries
// entries: READ_EVENT_LOG_STATUS answers the entries held (word at 4), the
// log's size (8), the sequence number the next entry gets (12) and the
// entries lost to newer ones (16); READ_EVENT_LOG takes an index, 0 the
// oldest entry held, in the word at 4 and answers that entry's sequence
// number, code and data in the words at 8, 12 and 16; WRITE_EVENT_LOG adds
// an entry with the code and data of the words at 4 and 8 and answers the
// sequence number it got in the word at 12.
#include "mailbox/firmware.hpp"

#include <cstring>

namespace kvdsim
{

namespace
{

using Words = std::array<uint32_t, 31>;

Words words_of(const MAILBOX &mb)
{
    Words w{};
    std::memcpy(w.data(), &mb.un, sizeof w);
    return w;
}

void put_words(MAILBOX &mb, const Words &w)
{
    std::memcpy(&mb.un, w.data(), sizeof w);
}

} // namespace

void Firmware::log_event(uint32_t code, uint32_t data)
{
    if (event_count_ == kEventLogEntries) {
        // The oldest entry gives way.
        for (uint32_t i = 1; i < kEventLogEntries; ++i)
            events_[i - 1] = events_[i];
        event_count_--;
        event_lost_++;
    }
    events_[event_count_++] = EventEntry{event_next_++, code, data};
}

uint16_t Firmware::set_variable(MailboxCommand &cmd)
{
    Words w = words_of(cmd.mb);
    if (w[0] >= kVariables)
        return MBXERR_ERROR;
    w[2] = variables_[w[0]];
    variables_[w[0]] = w[1];
    put_words(cmd.mb, w);
    return MBXERR_OK;
}

uint16_t Firmware::read_event_log_status(MailboxCommand &cmd)
{
    Words w = words_of(cmd.mb);
    w[0] = event_count_;
    w[1] = kEventLogEntries;
    w[2] = event_next_;
    w[3] = event_lost_;
    put_words(cmd.mb, w);
    return MBXERR_OK;
}

uint16_t Firmware::read_event_log(MailboxCommand &cmd)
{
    Words w = words_of(cmd.mb);
    if (w[0] >= event_count_)
        return MBXERR_ERROR;
    const EventEntry &e = events_[w[0]];
    w[1] = e.sequence;
    w[2] = e.code;
    w[3] = e.data;
    put_words(cmd.mb, w);
    return MBXERR_OK;
}

uint16_t Firmware::write_event_log(MailboxCommand &cmd)
{
    Words w = words_of(cmd.mb);
    w[2] = event_next_;
    log_event(w[0], w[1]);
    put_words(cmd.mb, w);
    return MBXERR_OK;
}

} // namespace kvdsim
