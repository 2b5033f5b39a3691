#include <cstdio>
#include <cstring>
#include <memory>

#include "common/AccessLock.h"
#include "datacache/DataCache.h"
#include "datacache/notify/codes.h"
#include "datacache/notify/notification.h"
#include "foundation/cim_log.h"

std::string notification::textOf(const zov_event_s &event) {
    return {event.text, strnlen(event.text, sizeof(event.text))};
}

void notification::log(const char *action, const char *gap, const zov_event_s &event) {
    const int32_t(&source)[3] = event.source.number;
    cim_log(CIM_LOG_INFO, "DCACHE: %s ZOV_EVENT_T[%d:%d:%d] (%d)%s%s : %.*s\n", action, static_cast<int>(source[0]),
            static_cast<int>(source[1]), static_cast<int>(source[2]), static_cast<int>(event.code), gap,
            DataCache::_tagToString(static_cast<int>(event.code)), static_cast<int>(sizeof(event.text)), event.text);
}

const char *DataCache::_tagToString(int code) {
    const codes::Code *row = codes::find(code);
    return row != nullptr ? row->name : codes::kOtherName;
}

void DataCache::zovlibNotificationCB(void * /*handle*/, zov_event_s *event, void * /*context*/) {
    const AccessLock lock;
    if (event == nullptr || instance == nullptr)
        return;
    if (!codes::isHandled(event->code)) {
        notification::log("Unhandled event,", "", *event);
        return;
    }
    auto copy = std::make_unique<zov_event_s>(*event);
    notification::log("queueing", "", *copy);
    instance->queueZovlibEvent(copy.get());
    copy.release(); // NOLINT(bugprone-unused-return-value): the queue owns it now
    _wakeEvalThread();
}

void DataCache::queueZovlibEvent(zov_event_s *record) {
    const AccessLock lock;
    _eventQueue.push_back(record);
}

void DataCache::zovlibEventKick(zov_eventcode_e code, zov_eventsource_s *source, const char *text) {
    const AccessLock lock;
    auto record = std::make_unique<zov_event_s>();
    record->code = code;
    if (source != nullptr)
        record->source = *source;
    if (text != nullptr)
        std::snprintf(record->text, sizeof(record->text), "%s", text);
    notification::log("queueing - kick -", "", *record);
    queueZovlibEvent(record.get());
    record.release(); // NOLINT(bugprone-unused-return-value): the queue owns it now
}
