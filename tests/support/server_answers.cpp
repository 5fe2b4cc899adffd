#include "support/server_answers.h"

namespace {

constexpr int accepted = 0;
constexpr int rejected = 1;
constexpr int failed = 2;

const Octets version = "02 02 02 02"_octets;
const Octets keys = "01 01 01 01 01 00"_octets;
const Octets end = "00 00"_octets;
const Octets offer_head = "61 80"_octets;
const Octets key_head = "A1 80"_octets;
const Octets whole_key = key_head + keys + end;
const Octets refusal_head = "63 80"_octets;

const char incompatible[] = "Tavrin Server using incompatible protocol";
const char no_private_key[] =
    "Tavrin Server does not support private key authentication.  Upgrade the Tavrin Server.";
const char wrong_version[] =
    "Tavrin Server does not support our protocol version. Upgrade the Tavrin Server, or "
    "downgrade the Tavrin Agent.";
const char bad_length[] = "data out of range in read_length";
const char bad_end[] = "List not terminated correctly in skip_to_eol";
const char bad_inner_end[] = "List not terminated correctly in read_devnode_list";

Octets offer_of(const Octets& version_element) { return offer_head + version_element + whole_key + end; }
Octets offer_with_key(const Octets& key) { return offer_head + version + key + end; }
Octets refusal_of(const Octets& reason) { return refusal_head + reason + end; }

void add_bad_identifiers(std::vector<ServerAnswer>& answers) {
    answers.insert(
        answers.end(),
        {{"the client's own message", "60 80 00 00"_octets, incompatible, failed},
         {"the closing element", "62 80 00 00"_octets, incompatible, failed},
         {"an offer without the constructed bit", "41 80 00 00"_octets, incompatible, failed},
         {"an offer of another class", "A1 80 00 00"_octets, incompatible, failed},
         {"a string", "04 02 6E 6F"_octets, incompatible, failed},
         {"an end of contents", "00 00"_octets, incompatible, failed},
         {"an endless number that ends in zero", "1F 80 80 80 80 80 80 00"_octets, incompatible, failed},
         {"a web server", octets_of("HTTP/1.1 400 Bad Request\r\n\r\n"), incompatible, failed},
         {"a mail server", octets_of("220 mail ESMTP\r\n"), incompatible, failed},
         {"a TLS alert", "15 03 01 00 02 02 28"_octets, incompatible, failed}});
}

void add_bad_offer_heads(std::vector<ServerAnswer>& answers) {
    const std::string definite = "Definite length read in read_server_offers_incomplete";
    answers.insert(answers.end(),
                   {{"definite offer", "61 0E"_octets + version + whole_key, definite, failed},
                    {"empty definite offer", "61 00"_octets, definite, failed},
                    {"one octet of length", "61 81 0E"_octets, definite, failed},
                    {"four octets of length", "61 84 00 00 00 0E"_octets, definite, failed},
                    {"five octets of length", "61 85 00 00 00 00 0E"_octets, bad_length, failed},
                    {"127 octets of length", "61 FF"_octets, bad_length, failed}});
}

void add_bad_versions(std::vector<ServerAnswer>& answers) {
    const std::string prefix = "server_offers.version: ";
    const std::string tag = prefix + "Wrong tag, expected BE_INTEGER";
    const std::string range = prefix + "data out of range in read_signed_int";
    answers.insert(answers.end(),
                   {{"offer without version", offer_head + end, tag, failed},
                    {"string for a version", offer_of("04 02 02 02"_octets), tag, failed},
                    {"boolean for a version", offer_of("01 01 01"_octets), tag, failed},
                    {"version of another class", offer_of("82 02 02 02"_octets), tag, failed},
                    {"version without length octets", offer_of("02 80 02 02 00 00"_octets), range, failed},
                    {"version with five octets of length", offer_of("02 85 00 00 00 00 02 02 02"_octets),
                     prefix + bad_length, failed},
                    {"version of five octets", offer_of("02 05 00 00 00 02 02"_octets), range, failed},
                    {"version of 4 GiB", offer_of("02 84 FF FF FF FF"_octets), range, failed},
                    {"version -1", offer_of("02 01 FF"_octets), range, failed},
                    {"version -32768", offer_of("02 02 80 00"_octets), range, failed},
                    {"version 65536", offer_of("02 03 01 00 00"_octets), range, failed},
                    {"version 2147483647", offer_of("02 04 7F FF FF FF"_octets), range, failed},
                    {"version -2147483648", offer_of("02 04 80 00 00 00"_octets), range, failed}});
}

void add_bad_key_heads(std::vector<ServerAnswer>& answers) {
    const std::string definite = "Definite length read in read_server_private_key";
    answers.insert(
        answers.end(),
        {{"no private key", offer_with_key({}), no_private_key, failed},
         {"another field first", offer_with_key("02 00"_octets + whole_key), no_private_key, failed},
         {"another element first", offer_with_key("A2 80 00 00"_octets), no_private_key, failed},
         {"key without the constructed bit", offer_with_key("81 00"_octets), no_private_key, failed},
         {"definite key", offer_with_key("A1 06"_octets + keys), definite, failed},
         {"empty definite key", offer_with_key("A1 00"_octets), definite, failed},
         {"key with four octets of length", offer_with_key("A1 84 00 00 00 06"_octets + keys), definite,
          failed},
         {"key with five octets of length", offer_with_key("A1 85 00 00 00 00 06"_octets), bad_length,
          failed}});
}

/// The same defects in either boolean of the private key; `before` has the octets before it.
void add_bad_booleans(std::vector<ServerAnswer>& answers, const std::string& name, const Octets& before) {
    const std::string prefix = "server_private_key." + name + ": ";
    const std::string tag = prefix + "Wrong tag, expected BE_BOOLEAN";
    const std::string range = prefix + "data out of range in read_bool";
    const auto add = [&](const std::string& what, const Octets& element, const std::string& text) {
        answers.push_back(
            {name + " " + what, offer_with_key(key_head + before + element + end), text, failed});
    };
    add("missing", {}, tag);
    add("an integer", "02 01 01"_octets, tag);
    add("a string", "04 01 01"_octets, tag);
    add("of another class", "81 01 01"_octets, tag);
    add("without content", "01 00"_octets, range);
    add("of two octets", "01 02 01 01"_octets, range);
    add("without length octets", "01 80 01"_octets, range);
    add("of 4 GiB", "01 84 FF FF FF FF 01"_octets, range);
    add("with five octets of length", "01 85 00 00 00 00 01 01"_octets, prefix + bad_length);
}

void add_bad_ends(std::vector<ServerAnswer>& answers) {
    const Octets key = key_head + keys;
    answers.insert(
        answers.end(),
        {{"end of the key with contents", offer_with_key(key + "00 01 05"_octets), bad_end, failed},
         {"indefinite end of the key", offer_with_key(key + "00 80"_octets), bad_end, failed},
         {"end of the offer with contents", offer_head + version + whole_key + "00 01 05"_octets, bad_end,
          failed},
         {"indefinite end of the offer", offer_head + version + whole_key + "00 80"_octets, bad_end, failed},
         {"end of the offer with five octets of length",
          offer_head + version + whole_key + "00 85 00 00 00 00 00"_octets, bad_length, failed},
         {"end of an unknown field with contents", offer_with_key(key + "30 80 00 01 05"_octets),
          bad_inner_end, failed},
         {"indefinite end of an unknown field", offer_with_key(key + "30 80 30 80 00 80"_octets),
          bad_inner_end, failed},
         {"unknown field with five octets of length", offer_with_key(key + "04 85 00 00 00 00 00"_octets),
          bad_length, failed}});
}

void add_beginnings(std::vector<ServerAnswer>& answers, const Octets& whole,
                    const std::vector<std::string>& prefixes) {
    for (std::size_t size = 0; size < whole.size(); ++size) {
        answers.push_back({"closes after " + std::to_string(size) + " octets", first_octets(whole, size),
                           prefixes[size] + "Peer closed connection unexpectedly", failed});
    }
}

} // namespace

std::vector<Octets> unknown_fields() {
    return {
        "02 00"_octets,
        "02 05 01 02 03 04 05"_octets,                            // an integer that is too large for us
        "01 03 00 00 00"_octets,                                  // a boolean of three octets
        "04 7F"_octets + Octets(127, 'x'),                        // one piece
        "04 81 80"_octets + Octets(128, 'x'),                     // exactly one full piece
        "04 82 01 00"_octets + Octets(256, 'x'),                  // two full pieces
        "04 82 20 00"_octets + Octets(8192, 'x'),                 // more than any field of ours may hold
        "04 84 00 00 00 01 41"_octets,                            // four octets of length
        "30 06 02 01 05 04 01 41"_octets,                         // a definite element
        "30 02 FF FF"_octets,                                     // whose content is rubbish
        "A1 80 01 01 01 00 00"_octets,                            // a second key
        "61 80 63 80 62 80 60 80 00 00 00 00 00 00 00 00"_octets, // all messages inside each other
        "04 80 02 01 05 00 00"_octets,                            // an indefinite string
        "DF 81 FF FF FF FF 7F 01 41"_octets,                      // an identifier of seven octets
        "19 19 19 02 01 05"_octets,                               // fillers before it
        "30 80 19 00 81 00"_octets,                               // a filler inside and a long end
    };
}

std::vector<ServerAnswer> acceptable_answers() {
    std::vector<ServerAnswer> answers = {
        {"the plainest offer", offer_of(version), "", accepted},
        {"fillers before every identifier",
         "19 61 80 19 19 02 02 02 02 19 A1 80 19 01 01 01 19 01 01 00 19 00 00 19 19 00 00"_octets, "",
         accepted},
        {"identifiers in the long form",
         "7F 01 80 1F 02 02 02 02 BF 01 80 1F 01 01 01 1F 01 01 00 1F 00 00 1F 00 00"_octets, "", accepted},
        {"one octet of length", offer_of("02 81 02 02 02"_octets), "", accepted},
        {"two octets of length", offer_of("02 82 00 02 02 02"_octets), "", accepted},
        {"three octets of length", offer_of("02 83 00 00 02 02 02"_octets), "", accepted},
        {"four octets of length", offer_of("02 84 00 00 00 02 02 02"_octets), "", accepted},
        {"three octets of version", offer_of("02 03 00 02 02"_octets), "", accepted},
        {"four octets of version", offer_of("02 04 00 00 02 02"_octets), "", accepted},
        {"both keys false", offer_with_key("A1 80 01 01 00 01 01 00 00 00"_octets), "", accepted},
        {"both keys true in another octet", offer_with_key("A1 80 01 01 FF 01 01 80 00 00"_octets), "",
         accepted},
        {"keys with long lengths", offer_with_key("A1 80 01 81 01 01 01 84 00 00 00 01 01 00 00"_octets), "",
         accepted},
        {"ends with a long length of zero",
         offer_head + version + key_head + keys + "00 81 00 00 84 00 00 00 00"_octets, "", accepted},
        {"octets behind the offer", offer_of(version) + "61 80 FF"_octets, "", accepted},
    };
    for (const Octets& field : unknown_fields()) {
        answers.push_back(
            {"unknown field in the key", offer_with_key(key_head + keys + field + end), "", accepted});
        answers.push_back({"unknown field in the offer", offer_with_key(whole_key + field), "", accepted});
        answers.push_back({"unknown fields in both",
                           offer_with_key(key_head + keys + field + field + end + field + field), "",
                           accepted});
    }
    return answers;
}

std::vector<ServerAnswer> bad_offers() {
    std::vector<ServerAnswer> answers;
    add_bad_identifiers(answers);
    add_bad_offer_heads(answers);
    add_bad_versions(answers);
    add_bad_key_heads(answers);
    add_bad_booleans(answers, "hasMasterKey", {});
    add_bad_booleans(answers, "hasHallmark", "01 01 01"_octets);
    add_bad_ends(answers);
    return answers;
}

std::vector<ServerAnswer> other_versions() {
    return {{"version 0 without content", offer_of("02 00"_octets), wrong_version, failed},
            {"version 0", offer_of("02 01 00"_octets), wrong_version, failed},
            {"version 2", offer_of("02 01 02"_octets), wrong_version, failed},
            {"version 511", offer_of("02 02 01 FF"_octets), wrong_version, failed},
            {"version 512", offer_of("02 02 02 00"_octets), "", accepted},
            {"version 513", offer_of("02 02 02 01"_octets), "", accepted},
            {"version 517", offer_of("02 02 02 05"_octets), "", accepted},
            {"version 600", offer_of("02 02 02 58"_octets), "", accepted},
            {"version 767", offer_of("02 02 02 FF"_octets), "", accepted},
            {"version 768", offer_of("02 02 03 00"_octets), wrong_version, failed},
            {"version 65535", offer_of("02 03 00 FF FF"_octets), wrong_version, failed}};
}

std::vector<ServerAnswer> refusals() {
    const std::string us = "Tavrin Server rejected us: ";
    const std::string reason = "negotiate_nack.reason: ";
    const std::string definite = "Definite length read in read_negotiate_nack";
    const std::string tag = reason + "Wrong tag, expected BE_STRING";
    const std::string range = reason + "data out of range in read_string";
    std::vector<ServerAnswer> answers = {
        {"a reason", "63 80 04 02 6E 6F 00 00"_octets, us + "no", rejected},
        {"no reason", refusal_of("04 00"_octets), us, rejected},
        {"a reason with one octet of length", refusal_of("04 81 02 6E 6F"_octets), us + "no", rejected},
        {"a reason with four octets of length", refusal_of("04 84 00 00 00 02 6E 6F"_octets), us + "no",
         rejected},
        {"a reason with a zero octet", refusal_of("04 05 6E 6F 00 6E 6F"_octets), us + "no", rejected},
        // The message is cut to 255 bytes, of which 27 are the beginning.
        {"the longest reason", refusal_of("04 82 04 00"_octets + Octets(1024, 'x')),
         us + std::string(228, 'x'), rejected},
        {"one more than the longest reason", refusal_of("04 82 04 01"_octets + Octets(1025, 'x')), range,
         failed},
        {"a reason of 4 GiB", refusal_of("04 84 FF FF FF FF"_octets), range, failed},
        {"an indefinite reason", refusal_of("04 80 6E 6F 00 00"_octets), range, failed},
        {"a reason with five octets of length", refusal_of("04 85 00 00 00 00 02 6E 6F"_octets),
         reason + bad_length, failed},
        {"an integer for a reason", refusal_of("02 01 05"_octets), tag, failed},
        {"a refusal without a reason", "63 80 00 00"_octets, tag, failed},
        {"a definite refusal", "63 04 04 02 6E 6F"_octets, definite, failed},
        {"a refusal with five octets of length", "63 85 00 00 00 00 04"_octets, bad_length, failed},
        {"an end with contents", refusal_head + "04 02 6E 6F 00 01 05"_octets, bad_end, failed},
        {"an unknown field's end with contents", refusal_head + "04 02 6E 6F 30 80 00 01 05"_octets,
         bad_inner_end, failed},
    };
    for (const Octets& field : unknown_fields())
        answers.push_back({"unknown field", refusal_of("04 02 6E 6F"_octets + field), us + "no", rejected});
    return answers;
}

std::vector<ServerAnswer> cut_answers() {
    const std::string first = "server_offers.version: ";
    const std::string master = "server_private_key.hasMasterKey: ";
    const std::string hallmark = "server_private_key.hasHallmark: ";
    const std::string reason = "negotiate_nack.reason: ";
    std::vector<ServerAnswer> answers;
    add_beginnings(answers, "61 80 02 02 02 05 A1 80 01 01 01 01 01 00 00 00 00 00"_octets,
                   {"", "", first, first, first, first, "", "", master, master, master, hallmark, hallmark,
                    hallmark, "", "", "", ""});
    add_beginnings(answers, "63 80 04 02 6E 6F 00 00"_octets,
                   {"", "", reason, reason, reason, reason, "", ""});
    return answers;
}
