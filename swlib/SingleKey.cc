#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <cstring>

#include "foundation/cim_log.h"
#include "swlib/MERO_Zov_Lib.h"
#include "swlib/messages.h"

zov_handle_t hSwitch = 0;

namespace {

constexpr int32_t kNotSupported = 0x67; // this switch does not have the attribute: an answer, not a failure

/// A copy of a value that the switch library may write into. It has room for a value of any size a library knows.
class ScratchValue {
public:
    explicit ScratchValue(const char *value) {
        const char *text = value != nullptr ? value : "";
        const std::size_t size = strlen(text) + 1;
        _text = static_cast<char *>(calloc(1, std::max(size, sizeof(SmlMessage::value))));
        if (_text != nullptr)
            memcpy(_text, text, size);
    }
    ~ScratchValue() { free(_text); }
    ScratchValue(const ScratchValue &) = delete;
    ScratchValue &operator=(const ScratchValue &) = delete;

    char *text() const { return _text; }

private:
    char *_text = nullptr;
};

} // namespace

extern "C" {

int32_t zov_smlGetV(zov_handle_t handle, char **value, uint32_t *size, const char *format, ...) {
    if (value == nullptr || size == nullptr || format == nullptr)
        return 1;
    va_list args;
    va_start(args, format);
    const swlib::Key key = swlib::formatKey(format, args);
    va_end(args);

    cim_log(CIM_LOG_INFO, "DCACHE: zov_smlGet '%s'\n", key.data());
    const int32_t result = zov_smlGet(handle, key.data(), value, size);
    if (result != 0 && result != kNotSupported)
        cim_log(CIM_LOG_CRIT, "CRIT:%s:%s[%d] zov_smlGet '%s' failed, sw_ret = 0x%x\n", swlib::kSourceName,
                "zov_smlGetV", __LINE__, key.data(), static_cast<unsigned int>(result));
    return result;
}

int32_t zov_smlSetV(zov_handle_t handle, const char *value, const char *format, ...) {
    if (format == nullptr)
        return 1;
    va_list args;
    va_start(args, format);
    const swlib::Key key = swlib::formatKey(format, args);
    va_end(args);

    cim_log(CIM_LOG_INFO, "DCACHE: zov_smlSet '%s'\n", key.data());
    const ScratchValue scratch(value);
    const int32_t result = scratch.text() != nullptr ? zov_smlSet(handle, key.data(), scratch.text()) : ENOMEM;
    if (result != 0)
        cim_log(CIM_LOG_CRIT, "CRIT:%s:%s[%d] zov_smlSet '%s' failed, sw_ret = %d\n", swlib::kSourceName, "zov_smlSetV",
                __LINE__, key.data(), static_cast<int>(result));
    return result;
}

} // extern "C"
