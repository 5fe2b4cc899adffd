#include "ctl/machine/identity.h"

#include "ctl/change/journal.h"
#include "ctl/io/encoding.h"
#include "ctl/io/sha256.h"
#include "ctl/io/system.h"
#include "ctl/machine/service.h"

#include <ctime>

namespace ctl {
namespace {

Json or_null(const std::string& text) { return text.empty() ? Json() : Json(text); }

} // namespace

std::string utc_time(std::time_t time) {
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", std::gmtime(&time));
    return text;
}

Json machine_identity() {
    return {{"name", machine_name()}, {"tavrinctl", TAVRIN_VERSION}, {"time", utc_time(std::time(nullptr))}};
}

Json spec_files_of(const std::vector<const MachineConfiguration*>& configurations) {
    Json files = Json::array();
    for (const MachineConfiguration* each : configurations) {
        const std::string path = to_utf8(each->path);
        files.push_back({{"path", path}, {"sha256", or_null(sha256_of_file(path).value_or(""))}});
    }
    return files;
}

void add_service(Json& object, const MachineConfiguration& configuration) {
    const std::string service = configuration.service();
    const ServiceInfo info = service.empty() ? ServiceInfo() : service_info(service);
    object["service"] = to_utf8(service);
    object["serviceState"] = or_null(info.state);
    object["startType"] = or_null(info.start_type);
    object["restartPending"] = !service.empty() && restart_is_pending(service);
}

} // namespace ctl
