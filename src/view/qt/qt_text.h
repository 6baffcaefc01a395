// Texts between the model, a byte a character, and the toolkit.

#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace cvl {

/// The model's text. Its line breaks are CR LF or a single CR.
inline QString FromModel(std::string_view text) {
  QString made = QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
  made.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  made.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  return made;
}

/// What a hand wrote; a character that the model can't hold becomes a question mark.
inline std::string ToModel(const QString &text) {
  const QByteArray bytes = text.toLatin1();
  return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

}  // namespace cvl
