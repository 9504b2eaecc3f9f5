#!/usr/bin/env bash
# Tells whether this machine can run 32-bit x86 programs, by running the smallest one there is: a 32-bit
# ELF program that only exits with status 42. Some kernels are built or booted without IA-32 emulation
# (dmesg: "IA-32 emulation off"); then wine32 cannot start either, whatever is installed.
# Exit status 0 when it can; otherwise 1, with the reason on stdout.
set -uo pipefail
probe=$(mktemp /tmp/lettrix-ia32-XXXXXX)
trap 'rm -f "$probe"' EXIT
# ELF header (52 bytes), one loadable segment (32 bytes), then: mov eax,1; mov ebx,42; int 0x80.
printf '\177ELF\001\001\001\000\000\000\000\000\000\000\000\000' >"$probe"
printf '\002\000\003\000\001\000\000\000\124\200\004\010\064\000\000\000' >>"$probe"
printf '\000\000\000\000\000\000\000\000\064\000\040\000\001\000\000\000\000\000\000\000' >>"$probe"
printf '\001\000\000\000\000\000\000\000\000\200\004\010\000\200\004\010' >>"$probe"
printf '\140\000\000\000\140\000\000\000\005\000\000\000\000\020\000\000' >>"$probe"
printf '\270\001\000\000\000\273\052\000\000\000\315\200' >>"$probe"
chmod +x "$probe"
"$probe" 2>/dev/null
status=$?
if [ "$status" != 42 ]; then
  reason="this kernel cannot run 32-bit programs (a 32-bit test program did not start: status $status"
  if dmesg 2>/dev/null | grep -qi 'IA-32 emulation off'; then reason+="; dmesg: IA-32 emulation off"; fi
  echo "$reason)"
  exit 1
fi
exit 0
