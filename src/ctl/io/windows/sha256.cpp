#include "ctl/io/sha256.h"

#include "ctl/failure.h"
#include "platform/win32.h"

#include <bcrypt.h>

#include <algorithm>
#include <memory>

namespace ctl {
namespace {

constexpr std::size_t digest_size = 32;
/// What one call takes at most.
constexpr std::size_t most_octets = 1U << 30;

struct AlgorithmCloser {
    using pointer = BCRYPT_ALG_HANDLE;
    void operator()(BCRYPT_ALG_HANDLE algorithm) const { BCryptCloseAlgorithmProvider(algorithm, 0); }
};
struct HashCloser {
    using pointer = BCRYPT_HASH_HANDLE;
    void operator()(BCRYPT_HASH_HANDLE hash) const { BCryptDestroyHash(hash); }
};

void check(NTSTATUS status) {
    if (!BCRYPT_SUCCESS(status))
        throw Failure{failed, "Windows cannot compute a SHA-256 (error " + std::to_string(status) + ")"};
}

/// The DLL is no known DLL on older systems, so its first call would look for it in the program's folder,
/// unless it is in memory already.
void load_from_system_folder() {
    wchar_t folder[MAX_PATH];
    const UINT size = GetSystemDirectoryW(folder, MAX_PATH);
    const std::wstring path = std::wstring(folder, size) + L"\\bcrypt.dll";
    if (size == 0 || LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH) == nullptr)
        throw Failure{failed, "Windows cannot compute a SHA-256: bcrypt.dll cannot be loaded"};
}

} // namespace

std::string sha256(std::string_view octets) {
    load_from_system_folder();
    BCRYPT_ALG_HANDLE opened = nullptr;
    check(BCryptOpenAlgorithmProvider(&opened, BCRYPT_SHA256_ALGORITHM, nullptr, 0));
    const std::unique_ptr<void, AlgorithmCloser> algorithm(opened);
    BCRYPT_HASH_HANDLE begun = nullptr;
    check(BCryptCreateHash(algorithm.get(), &begun, nullptr, 0, nullptr, 0, 0));
    const std::unique_ptr<void, HashCloser> hash(begun);
    for (; !octets.empty(); octets.remove_prefix(std::min(octets.size(), most_octets))) {
        // It does not write there.
        auto* const start = reinterpret_cast<PUCHAR>(const_cast<char*>(octets.data()));
        check(BCryptHashData(hash.get(), start, static_cast<ULONG>(std::min(octets.size(), most_octets)), 0));
    }
    std::string digest(digest_size, '\0');
    check(BCryptFinishHash(hash.get(), reinterpret_cast<PUCHAR>(digest.data()), digest_size, 0));
    return hex_of(digest);
}

} // namespace ctl
