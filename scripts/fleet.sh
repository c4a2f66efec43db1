# SPDX-License-Identifier: MIT
# Sourced by scripts that show many simulated robots on a cluster of servers. Comes after programs.sh,
# and screen.sh where the robots are to be seen.
# shellcheck shell=bash disable=SC2154 # what these set

fleet_nodes=3
shown_robots=4 # of a fleet, as the windows of one workspace

# Anybody may read, as the panels do; only the robots write.
configure_node() { # PORT
    cat >"$work/node$1.conf" <<CONF
port $1
bind 127.0.0.1
save ""
appendonly no
dir $work
logfile $work/node$1.log
cluster-enabled yes
cluster-config-file nodes$1.conf
cluster-require-full-coverage no
user robot on >$fleet_password ~* &* +@all
user default on nopass ~* -@all +@read +@connection -@dangerous +cluster|slots +cluster|getkeysinslot
CONF
}

# The answer to a command of the fleet's own user at the node with this port.
ask_node() { # PORT WORD...
    REDISCLI_AUTH=$fleet_password redis-cli --user robot -p "$@" 2>&1
}

# Whoever answers at the port may be somebody else, who took it first: that one knows no such user.
node_answers_or_is_gone() {
    [ "$(ask_node "$1" PING)" = PONG ] || ! kill -0 "${children[-1]}" 2>/dev/null
}

# start_node: a node at a port that is free, and whose cluster port, 10000 above it, is. Adds it to
# `ports`.
start_node() {
    local port
    for _ in {1..20}; do
        port=$((10000 + RANDOM % 12000)) # both below those that the system hands out
        configure_node "$port"
        start redis-server "$work/node$port.conf" >>"$work/servers.out" 2>&1
        wait_until 20 node_answers_or_is_gone "$port" || true
        if kill -0 "${children[-1]}" 2>/dev/null; then
            ports+=("$port")
            return
        fi
        unset 'children[-1]'
    done
    cat "$work"/servers.out "$work"/node*.log >&2
    fail "no server of the cluster starts"
}

cluster_is_whole() {
    local port
    for port in "${ports[@]}"; do
        ask_node "$port" CLUSTER INFO | grep -q '^cluster_state:ok' || return 1
        [ "$(ask_node "$port" CLUSTER NODES | grep -c ' connected ')" = $fleet_nodes ] || return 1
    done
}

# Sets `nodes`, the addresses of its servers.
start_cluster() {
    local i
    ports=()
    fleet_password=$(od -An -N32 -tx1 /dev/urandom | tr -d ' \n')
    for ((i = 0; i < fleet_nodes; i++)); do start_node; done
    nodes=$(printf ',127.0.0.1:%s' "${ports[@]}")
    nodes=${nodes:1}
    # shellcheck disable=SC2086 # words
    REDISCLI_AUTH=$fleet_password redis-cli --user robot --cluster create ${nodes//,/ } \
        --cluster-yes >"$work/cluster.out" 2>&1 || {
        cat "$work/cluster.out" >&2
        fail "the servers do not become a cluster"
    }
    wait_until 60 cluster_is_whole || fail "the cluster does not get ready"
}

# One window with a panel for each of the first robots.
write_workspace() { # ROBOTS
    local windows=() i
    for ((i = 1; i <= $1 && i <= shown_robots; i++)); do
        windows+=("{\"robot\": {\"address\": \"$nodes\", \"prefix\": \"{robot$i}/\"},
  \"panels\": [{\"plugin\": \"Glimmet\", \"dock\": \"Glimmet 1\"}]}")
    done
    {
        echo '{"format": "tarvek-workspace", "version": 1, "windows": ['
        (IFS=,; echo "${windows[*]}")
        echo ']}'
    } >"$work/fleet.tarvek"
}

robots_are_ready_or_gone() {
    grep -q '^publishing to ' "$work/robots.out" || ! kill -0 "${children[-1]}" 2>/dev/null
}

# start_fleet N: so many robots on a cluster, and a workspace of some of them.
start_fleet() {
    start_cluster
    (umask 077; echo "$fleet_password" >"$work/password")
    : >"$work/robots.out"
    start "$programs/tarvek-robot" --connect "$nodes" --user robot \
        --password-file "$work/password" --robots "$1" --prefix '{robot%}/' --rate 10 \
        >"$work/robots.out"
    wait_until 120 robots_are_ready_or_gone || true
    grep -q '^publishing to ' "$work/robots.out" || fail "the simulated robots do not start"
    write_workspace "$1"
}

fleet_windows() {
    xdotool search --onlyvisible --name '^Tarvek Desktop \(' 2>/dev/null
}

fleet_is_shown() {
    [ "$(fleet_windows | wc -l)" = "$1" ]
}

# open_fleet N: opens the example configuration in the panel of each window, and puts these side by side on a
# screen of 1920x1200.
open_fleet() {
    local shown=$(($1 < shown_robots ? $1 : shown_robots)) i id
    for ((i = 0; i < shown; i++)); do answer_with_example; done
    wait_for_no_window "Glimmet configuration"
    wait_until 30 fleet_is_shown "$shown" || fail "$shown windows do not come up"
    i=0
    for id in $(fleet_windows); do
        xdotool windowsize --sync "$id" 958 598 windowmove "$id" $((i % 2 * 960)) $((i > 1 ? 600 : 0))
        i=$((i + 1))
    done
    sleep 8 # until the graphs are full
}
