#include <cstdarg>
#include <cstring>

#include "common/numbers.h"
#include "swlib/MERO_Zov_Lib.h"
#include "swlib/messages.h"

namespace {

/// Reads one key; null when that failed, which is how a walk ends too. `message` keeps the text.
__attribute__((format(printf, 2, 3))) const char *readKey(SmlMessage &message, const char *format, ...) {
    message = SmlMessage();
    va_list args;
    va_start(args, format);
    const swlib::Key key = swlib::formatKey(format, args);
    va_end(args);
    std::memcpy(message.key, key.data(), key.size());
    if (zov_smlGetBatch(hSwitch, &message, 1) != 0 || isErrors(&message, 1) != 0)
        return nullptr;
    swlib::terminate(&message, 1);
    return message.value;
}

/// Hands a text that was read to the caller; nothing is touched when there is none.
char *handOver(char *dst, const char *value) {
    if (value == nullptr || dst == nullptr)
        return nullptr;
    std::memcpy(dst, value, std::strlen(value) + 1);
    return dst;
}

/// An argument that is inserted into a key.
const char *textOr(const char *text) {
    return text != nullptr ? text : "";
}

} // namespace

extern "C" {

char *get_first_lsdb_record(char *dst) {
    SmlMessage message;
    return handOver(dst, readKey(message, "Oper.Eport.FirstLsdbRecord"));
}

char *get_next_lsdb_record(const char *record, char *dst) {
    SmlMessage message;
    return handOver(dst, readKey(message, "Oper.Eport.NextLsdbRecord.%s", textOr(record)));
}

int get_lsdb_record_link_count(const char *record) {
    SmlMessage message;
    const char *value = readKey(message, "Oper.Eport.LsdbRecord.%s.NumberOfLinks", textOr(record));
    return value != nullptr ? numbers::decimal(value) : -1;
}

char *get_lsdb_record_link_local_information(const char *record, const char *link, char *dst) {
    SmlMessage message;
    return handOver(dst, readKey(message, "Oper.Eport.LsdbRecord.%s.Link.%s.LocalPort", textOr(record), textOr(link)));
}

char *get_lsdb_record_link_remote_information(const char *record, const char *link, char *dst) {
    SmlMessage message;
    return handOver(dst, readKey(message, "Oper.Eport.LsdbRecord.%s.Link.%s.Neighbor", textOr(record), textOr(link)));
}

char *get_first_attached_port(const char *scope, char *dst) {
    SmlMessage message;
    return handOver(dst, readKey(message, "Oper.NameServerAll.%s.FirstNsEntry", textOr(scope)));
}

char *get_next_attached_port(const char *scope, const char *entry, char *dst) {
    SmlMessage message;
    return handOver(dst, readKey(message, "Oper.NameServerAll.%s.NextNsEntry.%s", textOr(scope), textOr(entry)));
}

} // extern "C"
