#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

/// One run of KV_Akum: start it, read what it says and writes, decide what it was worth.
namespace schau::run {

/// One framed record of standard output: byte 1, a key, byte 2, a value, byte 3. Bytes as they came.
struct Record {
  std::string key{};
  std::string value{};
  bool complete = true;  ///< false when the output ended, or the next record began, before byte 3
};

/// What KV_Akum tells the person in front of it: a message box, or another record for a window.
struct Notice {
  enum class Kind : std::uint8_t {
    message,  ///< a message box: title and text
    window,   ///< any other record: its key is the title, its value the text
    unframed  ///< bytes that belong to no record; no title
  };
  Kind kind = Kind::message;
  std::string title{};
  std::string text{};
  bool complete = true;  ///< false when the record was broken off
};

/// Cuts standard output into records, however the pipe cuts it into pieces.
class RecordDecoder {
 public:
  using TakeRecord = std::function<void(Record)>;
  using TakeUnframed = std::function<void(std::string)>;

  /// `take_record` is called with each record at its byte 3, `take_unframed` with the bytes between two
  /// records at the beginning of the second one, and with a key that never got a value; in the order of the
  /// output.
  RecordDecoder(TakeRecord take_record, TakeUnframed take_unframed);

  /// Takes the next bytes of the output.
  void feed(std::string_view bytes);
  /// Ends the output: what has begun is handed on, a record as not complete.
  void finish();

 private:
  enum class Place : std::uint8_t { outside, key, value };

  [[nodiscard]] std::string_view marks() const;
  void take(std::string_view bytes);
  void take_mark(char mark);
  void hand_on(bool complete);

  TakeRecord take_record_;
  TakeUnframed take_unframed_;
  Place place_ = Place::outside;
  Record record_;
  std::string unframed_;
};

/// Puts records together to notices: the title of a message box comes in a record of its own before its text.
class NoticeReader {
 public:
  using TakeNotice = std::function<void(const Notice&)>;

  explicit NoticeReader(TakeNotice take_notice);
  NoticeReader(const NoticeReader&) = delete;
  NoticeReader& operator=(const NoticeReader&) = delete;
  NoticeReader(NoticeReader&&) = delete;
  NoticeReader& operator=(NoticeReader&&) = delete;
  ~NoticeReader() = default;

  void feed(std::string_view bytes) { decoder_.feed(bytes); }
  /// Ends the output; a title that is still without its text becomes a notice that is not complete.
  void finish();

 private:
  void take(Record record);
  void take_title(Record record);
  void give_title_alone();

  TakeNotice take_notice_;
  RecordDecoder decoder_;
  std::optional<std::string> title_;  ///< of a message box whose text is still to come
};

/// True for the notice of an error ("KV_Akum: Fehler", or the fatal message of the suite).
bool is_error(const Notice& notice);

}  // namespace schau::run
