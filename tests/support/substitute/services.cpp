#include "support/services.h"

#include "platform/win32.h"
#include "substitute/control.h"

void install_broken_service(const std::string& name) {
    substitute::ServiceScript script;
    script.state = SERVICE_STOPPED;
    script.start_error = ERROR_FILE_NOT_FOUND;
    substitute::set_service(name, script);
}

void remove_service(const std::string& name) { substitute::remove_service(name); }
