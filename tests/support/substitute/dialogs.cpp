#include "support/dialogs.h"

#include "substitute/control.h"

void accept_folder(const std::string& folder) { substitute::choose_next_folder({{folder}, true}); }
void cancel_folder_browser() { substitute::choose_next_folder({{"C:\\elsewhere"}, false}); }

void accept_file(const std::string& path) { substitute::choose_next_file(path); }
void cancel_file_dialog() { substitute::choose_next_file(std::nullopt); }

std::string existing_folder() { return "C:\\windows"; }
std::string existing_file() { return "C:\\windows\\win.ini"; }
