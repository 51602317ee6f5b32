// Stands in for Quillet in the tests that kill it: starts the backend, prints
// its port, and stays.
#include "LocalBackend.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    LocalBackend backend(application.arguments().value(1));
    backend.withEndpoint([](const LocalEndpoint &endpoint) {
        std::printf("%d\n", endpoint.generate.port());
        std::fflush(stdout);
    });
    return QCoreApplication::exec();
}
