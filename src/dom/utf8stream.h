#pragma once

#include <QTextStream>

namespace dom {

/// Makes a stream write UTF-8, in the words of either Qt.
inline void SetUtf8(QTextStream &stream)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    stream.setCodec("UTF-8");
#else
    stream.setEncoding(QStringConverter::Utf8);
#endif
}

} // namespace dom
