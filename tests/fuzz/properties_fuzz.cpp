// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// What other programs write into the properties of their windows, up to the place on the screen
// that is made of it.

#include "platform/linux/reading/Geometry.h"
#include "platform/linux/x11/WindowProperties.h"

#include <cstdlib>
#include <cstring>

using namespace platform::linux_;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    (void)windowClassOf(bytes);

    QList<quint32> items(qsizetype(size / sizeof(quint32)));
    if (!items.isEmpty())
        std::memcpy(items.data(), data, size_t(items.size()) * sizeof(quint32));
    const QRect surface(-100, 40, 900, 700);
    const QRect contents = withoutShadow(surface, items);
    if (contents.isEmpty() || !surface.contains(contents))
        std::abort();
    const QList<ScreenGeometry> screens{{QRect(0, 0, 1366, 768), 1.5},
                                        {QRect(-1920, 0, 1920, 1080), 1}};
    for (const bool countsFromWindow : {false, true}) {
        const QRect place = ontoScreen(QRect(10, 20, 300, 200), QRect(0, 0, 800, 600),
                                       WindowPlace{contents, surface, countsFromWindow});
        if (isPlausible(place, screens))
            (void)toPoints(place, screens);
    }
    return 0;
}
