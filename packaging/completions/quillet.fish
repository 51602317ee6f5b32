# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0

complete -c quillet -f
complete -c quillet -l setup -d "Show the wizard again"
complete -c quillet -l settings -d "Show the settings"
complete -c quillet -l permission -d "Show where the permission is given and taken back"
complete -c quillet -l background -d "Start without a window, and watch"
complete -c quillet -l diagnostics -d "Write what happens to standard output"
complete -c quillet -l doctor -d "Say whether Quillet can do its job here"
complete -c quillet -l json -d "With --doctor: print the facts as JSON"
complete -c quillet -s h -l help -d "Print the options"
complete -c quillet -s v -l version -d "Print the version"

complete -c quillet-backend -f
complete -c quillet-backend -l listen -x -d "Address to listen on"
complete -c quillet-backend -l port -x -d "Port to listen on"
complete -c quillet-backend -l host-name -x -d "Name that requests may use"
complete -c quillet-backend -l config -r -F -d "Configuration file"
complete -c quillet-backend -l child -d "Run for the program that started it"
complete -c quillet-backend -s h -l help -d "Print the options"
complete -c quillet-backend -s v -l version -d "Print the version"
