// Messages for the user from the LV2 side: through the host's log when it offers one, else on stderr.
#pragma once

#include <cstdio>
#include <cstring>

#include <lv2/core/lv2.h>
#include <lv2/log/log.h>
#include <lv2/urid/urid.h>

namespace tolvane {

class Lv2Log {
public:
    explicit Lv2Log(const LV2_Feature* const* features) {
        LV2_URID_Map* map = nullptr;
        for (int i = 0; features && features[i]; ++i) {
            if (std::strcmp(features[i]->URI, LV2_LOG__log) == 0) log_ = static_cast<LV2_Log_Log*>(features[i]->data);
            if (std::strcmp(features[i]->URI, LV2_URID__map) == 0) map = static_cast<LV2_URID_Map*>(features[i]->data);
        }
        if (log_ && map) error_ = map->map(map->handle, LV2_LOG__Error);
        else log_ = nullptr;
    }

    void error(const char* text) const {
        if (log_) log_->printf(log_->handle, error_, "%s\n", text);
        else std::fprintf(stderr, "%s\n", text);
    }

private:
    LV2_Log_Log* log_ = nullptr;
    LV2_URID error_ = 0;
};

}  // namespace tolvane
