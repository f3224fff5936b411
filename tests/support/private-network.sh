#!/bin/sh
# Runs a command in a network of its own, so that nothing it sends leaves the machine: a loopback
# with the addresses 10.0.0.1 to 10.0.0.4 besides 127.0.0.1, and the network 10.0.1.0/24, in which
# nobody ever answers 10.0.1.2.
set -eu
if [ "${1:-}" != --inside ]; then
    options=-n
    [ "$(id -u)" -eq 0 ] || options=-rn
    exec unshare "$options" "$0" --inside "$@"
fi
shift
ip link set lo up
for number in 1 2 3 4; do
    ip address add "10.0.0.$number/24" dev lo
done
ip link add silence type veth peer name silence-end
ip address add 10.0.1.1/24 dev silence
ip link set silence up
ip link set silence-end up
ip neighbour replace 10.0.1.2 lladdr 02:00:00:00:00:02 dev silence
exec "$@"
