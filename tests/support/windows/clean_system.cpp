#include "support/clean_system.h"

#include "support/registry.h"

void clean_system() {
    delete_key(test_key);
    delete_key("SOFTWARE\\Tavrin");
}
