// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Claims to be the only instance and says what came of it; the first one stays until its standard
// input ends, and reports each later one. Arguments: socket, startup id, and the request's word.
#include "quillet/shell/SingleInstance.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <iostream>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    SingleInstance instance(QString::fromLocal8Bit(argv[1]));
    QObject::connect(&instance, &SingleInstance::activationRequested,
                     [](const QByteArray &id, StartRequest request) {
                         std::cout << wordFor(request).constData() << ' ' << id.toStdString()
                                   << std::endl;
                     });
    if (instance.claim(argv[2], requestFor(argc > 3 ? argv[3] : "window")) ==
        SingleInstance::Role::Later) {
        std::cout << "later" << std::endl;
        return 0;
    }
    std::cout << "first" << std::endl;
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &QCoreApplication::quit);
    return QCoreApplication::exec();
}
