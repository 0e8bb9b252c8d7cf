// The operations of a stream, which are those of its run.

#include "krofx/stream/stream.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "krofx/stream/internal/stream_run.h"

namespace krofx {

using internal::OpenFile;
using internal::StreamRun;

namespace {

const KRString& NoMemory() {
  static const KRString text("memory was exhausted");
  return text;
}

}  // namespace

KRDataObj& StreamElement::Object() const { return m_run->Element(); }
KRTagID StreamElement::Tag() const { return Object().GetType(); }
std::size_t StreamElement::Number() const { return m_run->NumberOfElement(); }
const Place& StreamElement::Where() const { return m_run->PlaceOfElement(); }
KRString StreamElement::Path() const { return m_run->PathOfElement(); }
const KRAccount* StreamElement::Account() const { return m_run->AccountOfElement(); }
KRDataObj* StreamElement::Around(u16 levels) const { return m_run->Around(levels); }
KRString StreamElement::ToUtf8(const KRString& text) const { return m_run->ToUtf8(text); }
const OfxText& StreamElement::Text() const { return m_run->JudgedText(); }

Stream::Stream(const StreamOptions& options) : m_run(new StreamRun(options)) {}

Stream::Stream(Stream&& other) noexcept : m_run(std::exchange(other.m_run, nullptr)) {}

Stream& Stream::operator=(Stream&& other) noexcept {
  if (this != &other) {
    delete m_run;
    m_run = std::exchange(other.m_run, nullptr);
  }
  return *this;
}

Stream::~Stream() { delete m_run; }

void Stream::Add(bool (*isOfClass)(const KRDataObj&), bool list) {
  if (m_run != nullptr) m_run->Want(isOfClass, list);
}

Stream& Stream::WantTag(KRTagID tag) {
  if (m_run != nullptr) m_run->WantTag(tag);
  return *this;
}

void Stream::SetListener(StreamListener* listener) {
  if (m_run != nullptr) m_run->SetListener(listener);
}

void Stream::Open(KRBuffer& buffer) {
  if (m_run == nullptr || State() != StreamState::kIdle) return;
  m_run->Start();
  if (buffer.HasPlainBytes() != 0) {
    m_run->ReadInPlace(buffer);
  } else {
    m_run->Source().SetBuffer(buffer);
  }
}

void Stream::Open(std::string_view bytes) {
  if (m_run == nullptr || State() != StreamState::kIdle) return;
  m_run->Start();
  m_run->Source().SetBytes(bytes, true);
}

bool Stream::OpenFile(const char* path) {
  if (m_run == nullptr || State() != StreamState::kIdle) return false;
  if (path == nullptr) {
    m_run->Fail(KRParseStatus_Invalid, "no file is named");
    return false;
  }
  internal::OpenFile file(std::fopen(path, "rb"));
  if (file == nullptr) {
    m_run->Fail(KRParseStatus_Invalid, "it cannot be opened: ");
    m_run->Problem() += std::strerror(errno);
    return false;
  }
  // The window is the buffer.
  std::setvbuf(file.get(), nullptr, _IONBF, 0);
  m_run->Start();
  m_run->Source().SetFile(std::move(file));
  return true;
}

bool Stream::Feed(std::string_view piece) { return m_run != nullptr && m_run->Feed(piece); }

void Stream::Finish() {
  if (m_run == nullptr || State() == StreamState::kEnded) return;
  m_run->Source().Finish();
  m_run->Start();
}

const StreamElement* Stream::Next() { return m_run == nullptr ? nullptr : m_run->Next(); }

void Stream::Stop() {
  if (m_run != nullptr) m_run->Stop();
}

StreamState Stream::State() const {
  return m_run == nullptr ? StreamState::kEnded : m_run->State();
}

KRParseStatus Stream::Status() const {
  return m_run == nullptr ? KRParseStatus_Fatal : m_run->Status();
}

const KRString& Stream::Problem() const { return m_run == nullptr ? NoMemory() : m_run->Problem(); }

KRFile* Stream::Root() const { return m_run == nullptr ? nullptr : m_run->Text().root.get(); }

std::unique_ptr<KRFile> Stream::TakeRoot() {
  if (m_run == nullptr || State() != StreamState::kEnded) return nullptr;
  m_run->Stop();
  return std::move(m_run->Text().root);
}

const List<ReadWarning>& Stream::Warnings() const {
  static const List<ReadWarning> none;
  if (m_run == nullptr) return none;
  const Reading* const mended = m_run->MendedRecords();
  return mended != nullptr ? mended->warnings : m_run->Records().Warnings();
}

const List<Mending>& Stream::Mendings() const {
  static const List<Mending> none;
  const Reading* const mended = m_run == nullptr ? nullptr : m_run->MendedRecords();
  return mended != nullptr ? mended->mendings : none;
}

std::size_t Stream::Unrecorded() const {
  if (m_run == nullptr) return 0;
  const Reading* const mended = m_run->MendedRecords();
  return mended != nullptr ? mended->unrecorded : m_run->Records().Unkept();
}

bool Stream::MayHaveCommaAmount() const { return m_run != nullptr && m_run->MayHaveCommaAmount(); }

bool Stream::HasRepeatedFigure() const { return m_run != nullptr && m_run->HasRepeatedFigure(); }

bool Stream::HasMoreTags() { return m_run != nullptr && m_run->HasMoreTags(); }

std::size_t Stream::Position() const { return m_run == nullptr ? 0 : m_run->Position(); }

}  // namespace krofx
