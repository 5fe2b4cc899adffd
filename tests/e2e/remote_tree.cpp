#include "e2e/remote_tree.h"

#include "e2e/wait.h"
#include "e2e/window.h"

namespace e2e {
namespace {

constexpr int text_size = 1024;

/// What TVM_GETITEMA and TVM_GETITEMRECT read and fill, laid out in the other process' memory.
struct ItemBlock {
    TVITEMA item;
    char text[text_size];
    union {
        HTREEITEM asked;
        RECT place;
    };
};

/// Memory in another process, freed at the end of the scope.
class RemoteBlock {
public:
    explicit RemoteBlock(HANDLE owner) : process(owner) {
        retry("memory in the program", [&] {
            address = static_cast<ItemBlock*>(
                VirtualAllocEx(owner, nullptr, sizeof(ItemBlock), MEM_COMMIT, PAGE_READWRITE));
            return address != nullptr;
        });
    }
    ~RemoteBlock() { VirtualFreeEx(process, address, 0, MEM_RELEASE); }
    RemoteBlock(const RemoteBlock&) = delete;
    RemoteBlock& operator=(const RemoteBlock&) = delete;

    ItemBlock* get() const { return address; }
    void write(const ItemBlock& block) {
        retry("access to the program's memory",
              [&] { return WriteProcessMemory(process, address, &block, sizeof block, nullptr) != FALSE; });
    }
    void read(ItemBlock& block) {
        retry("access to the program's memory",
              [&] { return ReadProcessMemory(process, address, &block, sizeof block, nullptr) != FALSE; });
    }

private:
    /// Wine stops a thread of the other process for each of these calls, and fails while that is impossible.
    template <typename Call> static void retry(const char* what, Call call) { wait_for(what, call, 5); }

    HANDLE process;
    ItemBlock* address = nullptr;
};

} // namespace

HTREEITEM RemoteTree::next(WPARAM relation, HTREEITEM item) const {
    return reinterpret_cast<HTREEITEM>(send(tree, TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
}

std::string RemoteTree::text(HTREEITEM item) const {
    RemoteBlock remote(process);
    ItemBlock block = {};
    block.item.mask = TVIF_TEXT | TVIF_HANDLE;
    block.item.hItem = item;
    block.item.pszText = remote.get()->text;
    block.item.cchTextMax = text_size;
    remote.write(block);
    if (!send(tree, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(remote.get())))
        throw std::runtime_error("the tree has no such item");
    remote.read(block);
    block.text[text_size - 1] = '\0';
    return block.text;
}

bool RemoteTree::read_text_place(HTREEITEM item, RECT& place) const {
    RemoteBlock remote(process);
    ItemBlock block = {};
    block.asked = item;
    remote.write(block);
    if (!send(tree, TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&remote.get()->place)))
        return false;
    remote.read(block);
    place = block.place;
    return true;
}

bool RemoteTree::find_text(HTREEITEM item, RECT& place) const {
    if (!read_text_place(item, place))
        return false;
    RECT client = {};
    GetClientRect(tree, &client);
    if (place.top >= 0 && place.bottom <= client.bottom && place.left >= 0)
        return true;
    send(tree, TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(item));
    return read_text_place(item, place);
}

void RemoteTree::list(HTREEITEM first, const std::string& indent, std::vector<std::string>& lines) const {
    for (HTREEITEM item = first; item; item = next(TVGN_NEXT, item)) {
        lines.push_back(indent + text(item));
        list(next(TVGN_CHILD, item), indent + "  ", lines);
    }
}

std::vector<std::string> RemoteTree::texts() const {
    std::vector<std::string> lines;
    list(next(TVGN_ROOT, nullptr), "", lines);
    return lines;
}

HTREEITEM RemoteTree::find(const TreePath& path) const {
    HTREEITEM found = nullptr;
    for (const std::string& step : path) {
        HTREEITEM item = found ? next(TVGN_CHILD, found) : next(TVGN_ROOT, nullptr);
        while (item && text(item) != step)
            item = next(TVGN_NEXT, item);
        if (!item)
            throw std::runtime_error("no item \"" + step + "\" in the tree");
        found = item;
    }
    return found;
}

void RemoteTree::select(const TreePath& path) const {
    send(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(find(path)));
}

std::string RemoteTree::selected() const {
    const HTREEITEM item = next(TVGN_CARET, nullptr);
    return item ? text(item) : "";
}

} // namespace e2e
