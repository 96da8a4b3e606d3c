#include "autocli/run/Report.h"

#include <algorithm>

#include "autocli/base/Escape.h"
#include "autocli/render/Formatter.h"
#include "autocli/render/JsonText.h"

namespace autocli {

using Corvex::MetaObj::MetaString;

namespace {

/// The document grows piece by piece, so that a large result is never held twice.
void WriteJson(const Report& report, Sink& out) {
  std::string& text = out.Buffer();
  text += '{';
  if (report.batchLine != 0) text += "\"line\":" + std::to_string(report.batchLine) + ',';
  text += "\"command\":";
  AppendJsonString(text, report.path);
  text += ",\"ok\":";
  text += StatusOf(report.faults) == 0 ? "true" : "false";
  text += ",\"result\":";
  if (report.result) {
    JsonFormatter().Write(*report.result, report.view, out);
  } else {
    text += "null";
  }
  text += ",\"errors\":[";
  const char* separator = "";
  for (const auto& [kind, message] : report.faults) {
    text += separator;
    text += "{\"kind\":\"";
    text += MeaningOf(kind).name;
    text += "\",\"message\":";
    AppendJsonString(text, message);
    text += '}';
    separator = ",";
  }
  text += "]}\n";
}

}  // namespace

int StatusOf(const std::vector<Fault>& faults) {
  int status = 0;
  for (const Fault& fault : faults) status = std::max(status, MeaningOf(fault.kind).status);
  return status;
}

int WriteFaults(const std::vector<Fault>& faults, Sink& err) {
  for (const Fault& fault : faults) {
    const char* start = MeaningOf(fault.kind).status == 0 ? "warning:" : "error:";
    err.Buffer() += Painted(Ink::Error, start, err.IsColored()) + " ";
    AppendEscaped(err.Buffer(), fault.message);
    err.Buffer() += '\n';
  }
  return StatusOf(faults);
}

namespace {

/// A table that the command suggests gives way when the terminal is too narrow for it.
void WriteResult(const Report& report, Sink& out, Sink& err) {
  const Formatter& formatter = FormatterNamed(report.formatter);
  if (!report.isSuggested || &formatter != &TableFormatter() ||
      !IsTableTooWide(*report.result, report.view, out)) {
    return formatter.Write(*report.result, report.view, out);
  }
  SimpleFormatter().Write(*report.result, report.view, out);
  err.Buffer() += "note: too wide for a table here; \"--formatter table\" shows one\n";
}

}  // namespace

int WriteReport(const Report& report, Sink& out, Sink& err) {
  if (report.formatter == kJson) {
    WriteJson(report, out);
  } else {
    if (report.result) WriteResult(report, out, err);
    WriteFaults(report.faults, err);
  }
  return StatusOf(report.faults);
}

int WriteAnswer(const std::string& text, Report report, Sink& out, Sink& err) {
  if (report.formatter == kJson) {
    report.result = MetaString::New(text);
  } else {
    out.Buffer() += text;
  }
  return WriteReport(report, out, err);
}

}  // namespace autocli
