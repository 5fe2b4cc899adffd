#include "protocol/heads.h"

const char* read_head_by_parts(Stream* stream, std::uint32_t tag, std::uint32_t expected,
                               const char* wrong_tag, Head* head) {
    if (const char* problem = read_tag_if_needed(stream, &tag))
        return problem;
    if (tag != expected)
        return wrong_tag;
    return read_length(stream, &head->length, &head->indefinite);
}
