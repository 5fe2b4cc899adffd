// Before anything is timed, every codec must transfer the same values and refuse the same errors.
#include "handshake/handshake.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

using namespace handshake;

const Codec* const codecs[] = {&our_codec, &lber_codec, &snmp_codec, &tasn1_codec};
const Request request = {514, "web1.example.org", "example.org", true, true, true};
const Offer offer = {517, true, false};

bool compatible(long version) { return (version >> 8 & 0xFF) == 2; }

/// The agent's side: sends the request, reads the offer, checks the version and closes.
bool agent_side(const Codec& codec, const Packet& answer, Packet& question, Packet& closing) {
    Offer heard{};
    return codec.write_request(request, question) && codec.read_offer(answer, heard) &&
           compatible(heard.version) && codec.write_closing(closing);
}

/// Both sides, from the first element to the last.
bool both_sides(const Codec& codec, HeardRequest& heard_request, Offer& heard_offer) {
    Packet packet;
    return codec.write_request(request, packet) && codec.read_request(packet, heard_request) &&
           codec.write_offer(offer, packet) && codec.read_offer(packet, heard_offer) &&
           compatible(heard_offer.version) && codec.write_closing(packet) && codec.read_closing(packet);
}

bool carries_everything(const Codec& codec) {
    HeardRequest heard{};
    Offer heard_offer{};
    return both_sides(codec, heard, heard_offer) && heard.version == 514 &&
           std::strcmp(heard.name.get(), "web1.example.org") == 0 &&
           std::strcmp(heard.domain.get(), "example.org") == 0 && *heard.id.get() == '\0' &&
           heard.has_master_key && heard.has_hallmark && heard.testing && heard_offer.version == 517 &&
           heard_offer.has_master_key && !heard_offer.has_hallmark;
}

bool refuses_defects(const Codec& codec) {
    Packet packet;
    Offer heard{};
    const std::string long_name(257, 'n');
    const std::string long_domain(1025, 'd');
    if (codec.write_request({65536, "a", "b", true, true, true}, packet) ||
        codec.write_request({514, long_name.c_str(), "b", true, true, true}, packet) ||
        codec.write_request({514, "a", long_domain.c_str(), true, true, true}, packet) ||
        codec.write_offer({-1, true, true}, packet) || !codec.write_offer(offer, packet))
        return false;
    for (std::size_t size = packet.size; size-- > 0;) {
        packet.size = size;
        if (codec.read_offer(packet, heard))
            return false;
    }
    return codec.write_closing(packet) && !codec.read_offer(packet, heard);
}

void time_both_sides(benchmark::State& state, const Codec& codec) {
    for (auto _ : state) {
        HeardRequest heard{};
        Offer heard_offer{};
        if (!both_sides(codec, heard, heard_offer))
            state.SkipWithError("the handshake failed");
        benchmark::DoNotOptimize(heard);
        benchmark::DoNotOptimize(heard_offer);
    }
}

void time_agent_side(benchmark::State& state, const Codec& codec) {
    Packet answer;
    Packet question;
    Packet closing;
    codec.write_offer(offer, answer);
    for (auto _ : state) {
        if (!agent_side(codec, answer, question, closing))
            state.SkipWithError("the handshake failed");
        benchmark::DoNotOptimize(question);
        benchmark::DoNotOptimize(closing);
    }
}

} // namespace

int main(int count, char** arguments) {
    for (const Codec* codec : codecs) {
        if (!carries_everything(*codec) || !refuses_defects(*codec)) {
            std::fprintf(stderr, "%s does not do the same work\n", codec->name);
            return 1;
        }
        benchmark::RegisterBenchmark((std::string("handshake, both sides/") + codec->name).c_str(),
                                     [codec](benchmark::State& state) { time_both_sides(state, *codec); });
        benchmark::RegisterBenchmark((std::string("handshake, agent's side/") + codec->name).c_str(),
                                     [codec](benchmark::State& state) { time_agent_side(state, *codec); });
    }
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
