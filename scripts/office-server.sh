#!/usr/bin/env bash
# Prepares the PostgreSQL side of an office whose workstations share one server. Run it as root
# on the server (Debian), once:
#
#   bash scripts/office-server.sh --network 192.168.1.0/24 [--db okul] [--user muhasebe]
#
# It installs PostgreSQL when missing, makes a role (with a password it asks for) and a
# database owned by it, lets the office's network in with scram-sha-256 over TLS only, turns TLS
# on (Debian's snakeoil certificate unless the server has one of its own), restarts the server,
# and prints the --pg text that every workstation starts the program with.
set -euo pipefail
network=""; db=okul; user=muhasebe; port=5432
while [ $# -gt 0 ]; do
    case "$1" in
    --network) network=$2; shift 2 ;;
    --db) db=$2; shift 2 ;;
    --user) user=$2; shift 2 ;;
    --port) port=$2; shift 2 ;;
    *) echo "Bilinmeyen seçenek: $1" >&2; exit 2 ;;
    esac
done
[ -n "$network" ] || { echo "Ofis ağını verin, örnek: --network 192.168.1.0/24" >&2; exit 2; }
[ "$(id -u)" = 0 ] || { echo "Sunucuda root olarak çalıştırın." >&2; exit 2; }
[[ "$db" =~ ^[a-z_][a-z0-9_]*$ && "$user" =~ ^[a-z_][a-z0-9_]*$ ]] \
    || { echo "Veritabanı ve kullanıcı adı küçük harf, rakam ve _ olmalı." >&2; exit 2; }

if ! command -v pg_lsclusters >/dev/null || [ -z "$(pg_lsclusters -h 2>/dev/null)" ]; then
    apt-get update -qq
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq postgresql ssl-cert >/dev/null
fi
# TLS needs a certificate: Debian's snakeoil one unless the server has one of its own.
if [ ! -f /etc/ssl/certs/ssl-cert-snakeoil.pem ]; then
    dpkg-query -W -f='${Status}' ssl-cert 2>/dev/null | grep -q 'install ok installed' || {
        apt-get update -qq
        DEBIAN_FRONTEND=noninteractive apt-get install -y -qq ssl-cert >/dev/null
    }
    make-ssl-cert generate-default-snakeoil
fi
read -r version cluster _ < <(pg_lsclusters -h | sort -V | tail -n 1)
conf=/etc/postgresql/$version/$cluster
pg_ctlcluster "$version" "$cluster" start 2>/dev/null || true

if [ -z "${VORTEL_OFIS_SIFRESI:-}" ]; then
    read -r -s -p "$user için parola: " VORTEL_OFIS_SIFRESI; echo
    read -r -s -p "Parola (tekrar): " again; echo
    [ "$VORTEL_OFIS_SIFRESI" = "$again" ] || { echo "Parolalar aynı değil." >&2; exit 1; }
fi
as_pg() { runuser -u postgres -- psql -X -q -v ON_ERROR_STOP=1 -p "$port" "$@"; }
as_pg -v user="$user" -v pw="$VORTEL_OFIS_SIFRESI" -v db="$db" <<'SQL'
SET password_encryption = 'scram-sha-256';
SELECT format('CREATE ROLE %I LOGIN PASSWORD %L', :'user', :'pw')
 WHERE NOT EXISTS (SELECT 1 FROM pg_roles WHERE rolname = :'user') \gexec
SELECT format('ALTER ROLE %I LOGIN PASSWORD %L', :'user', :'pw') \gexec
SELECT format('CREATE DATABASE %I OWNER %I ENCODING ''UTF8'' TEMPLATE template0', :'db', :'user')
 WHERE NOT EXISTS (SELECT 1 FROM pg_database WHERE datname = :'db') \gexec
SQL

# The office's network, with scram-sha-256 and TLS only; added once.
rule="hostssl $db $user $network scram-sha-256"
grep -qxF "$rule" "$conf/pg_hba.conf" || printf '%s\n' "# Zerna Vortel" "$rule" >> "$conf/pg_hba.conf"
cat > "$conf/conf.d/zerna-vortel.conf" <<CONF
listen_addresses = '*'
ssl = on
password_encryption = 'scram-sha-256'
CONF
pg_ctlcluster "$version" "$cluster" restart

host=$(hostname -I 2>/dev/null | awk '{print $1}')
echo
echo "Sunucu hazır. Her iş istasyonunda programı şöyle başlatın:"
echo "  zerna-vortel --pg \"host=${host:-SUNUCU} port=$port dbname=$db user=$user password=...\""
