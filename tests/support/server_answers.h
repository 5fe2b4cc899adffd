#pragma once
/// Answers of a server to an agent's request, good or hostile, and the tool's results. The same answers are
/// used in memory and over real sockets.
#include "support/octets.h"

#include <string>

struct ServerAnswer {
    std::string what; // what is wrong or special about it
    Octets octets;
    std::string text; // empty: accepted
    int status;
};

/// Answers that follow the protocol, including the strangest forms that it allows.
std::vector<ServerAnswer> acceptable_answers();
/// Answers with a defect anywhere in a server's offer.
std::vector<ServerAnswer> bad_offers();
/// Offers of other protocol versions.
std::vector<ServerAnswer> other_versions();
/// Refusals, with and without a defect.
std::vector<ServerAnswer> refusals();
/// Every beginning of an offer and of a refusal; the peer closes after it.
std::vector<ServerAnswer> cut_answers();

/// Fields that a reader does not know, in every form that they may take.
std::vector<Octets> unknown_fields();
