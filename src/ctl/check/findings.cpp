#include "ctl/check/findings.h"

#include "ctl/io/json.h"
#include "ctl/io/printable.h"

#include <algorithm>

namespace ctl {
namespace {

const char* name_of(Severity severity) { return severity == Severity::error ? "error" : "warning"; }

/// Calls `each(path, finding)` for every finding, in order.
template <typename Each> void for_all(const CheckedFiles& files, Each each) {
    for (const CheckedFile& file : files) {
        for (const Finding& finding : file.findings)
            each(file.path, finding);
    }
}

std::string as_text(const CheckedFiles& files) {
    std::string text;
    for_all(files, [&](const std::string& path, const Finding& finding) {
        text += path + ":" + std::to_string(finding.line) + ": " + name_of(finding.severity) + ": " +
                printable(finding.text) + "\n";
    });
    return text;
}

Json json_of(const Finding& finding) {
    return {{"line", finding.line}, {"severity", name_of(finding.severity)}, {"text", finding.text}};
}

std::string as_json(const CheckedFiles& files) {
    Json all = Json::array();
    for (const CheckedFile& file : files) {
        Json findings = Json::array();
        for (const Finding& each : file.findings)
            findings.push_back(json_of(each));
        all.push_back({{"path", file.path}, {"findings", std::move(findings)}});
    }
    return to_text({{"schema", 1}, {"errors", has_errors(files)}, {"files", std::move(all)}});
}

bool is_path_character(char each) {
    return (each >= '0' && each <= '9') || (each >= 'a' && each <= 'z') || (each >= 'A' && each <= 'Z') ||
           std::string_view("/-._~").find(each) != std::string_view::npos;
}

/// A relative path stays relative, because forges look for the file in the repository.
std::string uri_of(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    const bool has_drive = path.size() > 2 && path[1] == ':';
    if (has_drive)
        return "file:///" + path.substr(0, 2) + percent_encoded(path.substr(2), is_path_character);
    return (path.starts_with('/') ? "file://" : "") + percent_encoded(path, is_path_character);
}

Json sarif_result(const std::string& path, const Finding& finding) {
    const Json place = {{"artifactLocation", {{"uri", uri_of(path)}}},
                        {"region", {{"startLine", finding.line}}}};
    return {{"ruleId", "check"},
            {"level", name_of(finding.severity)},
            {"message", {{"text", finding.text}}},
            {"locations", Json::array({{{"physicalLocation", place}}})}};
}

std::string as_sarif(const CheckedFiles& files) {
    Json results = Json::array();
    for_all(files, [&](const std::string& path, const Finding& finding) {
        results.push_back(sarif_result(path, finding));
    });
    const Json rule = {{"id", "check"},
                       {"shortDescription", {{"text", "What is wrong with a spec file or a state"}}}};
    const Json driver = {{"name", "tavrinctl"}, {"version", TAVRIN_VERSION}, {"rules", Json::array({rule})}};
    const Json run = {{"tool", {{"driver", driver}}}, {"results", std::move(results)}};
    return to_text({{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                    {"version", "2.1.0"},
                    {"runs", Json::array({run})}});
}

/// A colon or a comma would end the property of a workflow command.
bool is_property_character(char each) {
    return std::string_view("%\r\n:,").find(each) == std::string_view::npos;
}

/// A workflow command for each finding.
std::string as_github(const CheckedFiles& files) {
    std::string text;
    for_all(files, [&](const std::string& path, const Finding& finding) {
        text += std::string("::") + name_of(finding.severity) +
                " file=" + percent_encoded(path, is_property_character) +
                ",line=" + std::to_string(finding.line) +
                "::" + percent_encoded(printable(finding.text), [](char each) { return each != '%'; }) + "\n";
    });
    return text;
}

} // namespace

bool has_errors(const CheckedFiles& files) {
    return std::any_of(files.begin(), files.end(), [](const CheckedFile& file) {
        return std::any_of(file.findings.begin(), file.findings.end(),
                           [](const Finding& each) { return each.severity == Severity::error; });
    });
}

std::string report_findings(const CheckedFiles& files, const std::string& format) {
    if (format == "json")
        return as_json(files);
    if (format == "sarif")
        return as_sarif(files);
    return format == "github" ? as_github(files) : as_text(files);
}

} // namespace ctl
