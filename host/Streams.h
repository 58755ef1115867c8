#pragma once

// The two streams to which Korval code prints.

#include <boost/smart_ptr/shared_ptr.hpp>
#include <string>
#include <string_view>

#include "host/Export.h"

namespace klutil::io {

/// Where text goes.
class KORVAL_HOST_API KLSink {
 public:
  virtual ~KLSink();
  virtual void write(std::u16string_view text) = 0;
};

}  // namespace klutil::io

namespace services::io {

/// A sink that keeps what it gets.
class KORVAL_HOST_API KLStringSink : public klutil::io::KLSink {
 public:
  KLStringSink();
  ~KLStringSink() override;
  void write(std::u16string_view text) override;
  const std::u16string& text() const noexcept { return text_; }

 private:
  std::u16string text_;
};

/// A stream with a stack of sinks, of which the top one gets the text.
class KORVAL_HOST_API KLStream {
 public:
  virtual ~KLStream();

  static KLStream& KLOut();
  static KLStream& KLErr();

  virtual void push(boost::shared_ptr<klutil::io::KLSink> sink) = 0;
  /// Delivers what is still held back to the top sink. Undoes: no interrupt stops it.
  virtual void flush() = 0;
  /// Removes the top sink. Undoes: no interrupt stops it.
  virtual void pop() = 0;
};

}  // namespace services::io
