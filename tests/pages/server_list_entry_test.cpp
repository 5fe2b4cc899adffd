#include "pages/kinds/server_list_entry.h"

#include "pages/configuration.h"
#include "pages/test_key.h"
#include "support/boxes.h"
#include "support/page.h"
#include "support/spec_text.h"
#include "support/thrown.h"
#include "window/guard.h"

#include <gtest/gtest.h>

namespace {

/// A scan that gets no further than the port it is to use: no octet leaves.
class ScanWithoutPort : public SpecKeyTest {
protected:
    std::string thrown_by_scan(const std::string& port_subspec) {
        const auto configuration =
            parse("\\" + test_key + "\nAgent\n!G\n$L\nList\nh\nServerList\n" + port_subspec);
        const StandInMainWindow main(436, 229);
        configuration->entry_by_title("L").select(main.window());
        click(main.control(2));
        EXPECT_TRUE(boxes.seen().empty());
        return thrown_text([] { rethrow_kept(); });
    }

    Boxes boxes;
};

TEST_F(ScanWithoutPort, IsFatal) {
    EXPECT_EQ(thrown_by_scan(""), "Did not find anything with the title \"Port\"");
    EXPECT_EQ(thrown_by_scan("$port\nPort\nh\nInteger\n"), "Did not find anything with the title \"Port\"");
    EXPECT_EQ(thrown_by_scan("$Port\nEvent\nh\nSignalEvent\n"), "Found title, but it is not a CommonRegKey");
}

TEST_F(ScanWithoutPort, WithSomethingElseForAPortIsFatal) {
    set_text("Port", "0x1F");
    EXPECT_EQ(thrown_by_scan("$Port\nPort\nh\nString\n"), "Error reading value: Error parsing: \"0x1F\"");
}

} // namespace
