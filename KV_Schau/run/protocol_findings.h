#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "KV_Schau/findings/finding.h"
#include "KV_Schau/run/protocol.h"

namespace schau::run {

/// The messages of a protocol as findings: the code stands for the rule.
struct ProtocolFindings {
  std::map<std::pair<std::string, findings::Severity>, findings::Rule> rules;
  /// Errors first, then warnings, then notes; those of one severity as the protocol has them.
  std::vector<findings::Finding> findings;
};

/// Each finding lies at the element that its message names: in the file that the message names, else in the
/// system file; without such an element it lies in the line of the protocol. The first text that is the name
/// of an element counts, of several elements of one name the last in the system file, in the other files its
/// first line. Linear in the messages.
ProtocolFindings findings_of(const Protocol& protocol, const variant::Variant& variant);

/// A message as one German sentence without its full stop (UTF-8): the lines joined, the dot leaders and the
/// word of its severity left out. "Das Element K17 ist in der Systemlogik mehrfach definiert".
std::string sentence_of(const Message& message, const std::string& variant_name);

}  // namespace schau::run
