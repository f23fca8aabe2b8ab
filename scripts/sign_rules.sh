#!/usr/bin/env bash
# Signs rule documents for builds that ask for it (MIRELO_RULES_KEY); docs/rules.md tells what is signed.
#
#   sign_rules.sh new-key KEY.pem             makes a key and prints its public half, as the build takes it
#   sign_rules.sh public KEY.pem              prints that again
#   sign_rules.sh sign KEY.pem RULES.json     prints the document with its signature
set -euo pipefail

usage() {
    sed -n 's/^#   //p' "${BASH_SOURCE[0]}" >&2
    exit 2
}

# The curve's point: the last 64 bytes of the public key's DER form.
public_half() {
    openssl ec -in "$1" -pubout -outform DER 2>/dev/null | tail -c 64 | od -An -v -tx1 | tr -d ' \n'
    echo
}

# openssl writes two ASN.1 integers, without leading zeros; here they are 32 bytes each.
signature_of() {
    openssl dgst -sha256 -sign "$1" "$2" | openssl asn1parse -inform DER | sed -n 's/.*INTEGER *://p' |
        while read -r number; do printf '%64s' "$number" | tr ' ' 0; done |
        sed 's/../\\x&/g' | { read -r bytes || true; printf "$bytes"; } | base64 -w 0
}

[ $# -ge 2 ] || usage
umask 077
case "$1" in
    new-key)
        [ ! -e "$2" ] || { echo "$2 exists already" >&2; exit 1; }
        openssl ecparam -name prime256v1 -genkey -noout -out "$2"
        public_half "$2"
        ;;
    public)
        public_half "$2"
        ;;
    sign)
        [ $# -eq 3 ] || usage
        [ "$(head -c 1 "$3")" = '{' ] || { echo "$3 must begin with { : no blank and no byte-order mark before it" >&2; exit 1; }
        printf '{"signature":"%s",' "$(signature_of "$2" "$3")"
        tail -c +2 "$3"
        ;;
    *)
        usage
        ;;
esac
