#include "KV_Schau/run/records.h"

#include <utility>

namespace schau::run {
namespace {

constexpr char record_start = '\x01';
constexpr char record_separator = '\x02';
constexpr char record_end = '\x03';

constexpr std::string_view message_box = "messagebox_button_";
constexpr std::string_view title_action = "_settitle";

constexpr std::string_view error_title = "KV_Akum: Fehler";
constexpr std::string_view fatal_title = "Schwerer Fehler";

bool is_message_box(const Record& record) {
  return record.key.starts_with(message_box);
}

bool is_title(const Record& record) {
  return is_message_box(record) && record.key.ends_with(title_action);
}

}  // namespace

RecordDecoder::RecordDecoder(TakeRecord take_record, TakeUnframed take_unframed)
    : take_record_(std::move(take_record)), take_unframed_(std::move(take_unframed)) {}

void RecordDecoder::feed(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t mark = bytes.find_first_of(marks());
    take(bytes.substr(0, mark));
    if (mark == std::string_view::npos) return;
    take_mark(bytes[mark]);
    bytes.remove_prefix(mark + 1);
  }
}

void RecordDecoder::finish() {
  hand_on(false);
  place_ = Place::outside;
}

// The bytes that mean something where the decoder stands; elsewhere they are characters as any other.
std::string_view RecordDecoder::marks() const {
  switch (place_) {
    case Place::outside:
      return "\x01";
    case Place::key:
      return "\x01\x02\x03";
    case Place::value:
      break;
  }
  return "\x01\x03";
}

void RecordDecoder::take(std::string_view bytes) {
  if (place_ == Place::outside) {
    unframed_ += bytes;
  } else {
    (place_ == Place::key ? record_.key : record_.value) += bytes;
  }
}

void RecordDecoder::take_mark(char mark) {
  if (mark == record_separator) {
    place_ = Place::value;
    return;
  }
  hand_on(mark == record_end);
  place_ = mark == record_start ? Place::key : Place::outside;
}

void RecordDecoder::hand_on(bool complete) {
  if (place_ == Place::value) {
    record_.complete = complete;
    take_record_(std::exchange(record_, {}));
    return;
  }
  std::string& bytes = place_ == Place::key ? record_.key : unframed_;
  if (!bytes.empty()) take_unframed_(std::exchange(bytes, {}));
}

NoticeReader::NoticeReader(TakeNotice take_notice)
    : take_notice_(std::move(take_notice)),
      decoder_([this](Record record) { take(std::move(record)); },
               [this](std::string bytes) {
                 take_notice_({.kind = Notice::Kind::unframed, .text = std::move(bytes)});
               }) {}

void NoticeReader::finish() {
  decoder_.finish();
  give_title_alone();
}

void NoticeReader::take(Record record) {
  if (is_title(record)) return take_title(std::move(record));
  if (is_message_box(record)) {
    take_notice_({.title = std::exchange(title_, {}).value_or(""),
                  .text = std::move(record.value),
                  .complete = record.complete});
    return;
  }
  give_title_alone();
  take_notice_({.kind = Notice::Kind::window,
                .title = std::move(record.key),
                .text = std::move(record.value),
                .complete = record.complete});
}

void NoticeReader::take_title(Record record) {
  give_title_alone();
  title_ = std::move(record.value);
  if (!record.complete) give_title_alone();
}

void NoticeReader::give_title_alone() {
  if (!title_) return;
  take_notice_({.title = std::move(*title_), .complete = false});
  title_.reset();
}

bool is_error(const Notice& notice) {
  return notice.kind == Notice::Kind::message &&
         (notice.title == error_title || notice.title.starts_with(fatal_title));
}

}  // namespace schau::run
