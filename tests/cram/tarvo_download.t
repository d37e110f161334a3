ASIC firmware download. An image: a 32-byte header (version, file length,
image length, checksum offset), the body, a 16-byte version record (padded,
type, version, XOR checksum). `mkimg FILE VERSION TYPE [FLAW]` writes one.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ calls() { grep -c '^KVD_SendTarvoCommand' trace || :; }
  $ mkimg() {
  >   python3 - "$@" <<'PY'
  > import struct, sys
  > name, version, vtype = sys.argv[1], int(sys.argv[2], 0), int(sys.argv[3])
  > flaw = sys.argv[4] if len(sys.argv) > 4 else ""
  > body = b"".join(struct.pack("<I", (0x9e3779b9 * i) & 0xffffffff) for i in range(1, 25))
  > length = 32 + len(body) + 16
  > flen = {"oddlen": length - 2, "long": length + 64, "short": 12}.get(flaw, length)
  > csoff = {"outside": length + 4}.get(flaw, length - 4)
  > hdr = struct.pack("<8I", 0, 0, version, flen, len(body), 0, 0, csoff)
  > data = hdr + body
  > cs = 0
  > for i in range(0, len(data), 4):
  >     cs ^= struct.unpack_from("<I", data, i)[0]
  > if flaw == "badsum":
  >     cs ^= 0x100
  > if flaw == "short":
  >     cs = 0
  > ver = version + (1 if flaw == "badver" else 0)
  > img = data + struct.pack("<4I", 0, vtype, ver, cs)
  > if flaw == "trailing":
  >     img += b"\xee" * 8
  > if flaw == "headless":
  >     img = img[:20]
  > open(name, "wb").write(img)
  > PY
  > }

A good operational image is sent whole and installed.

  $ mkimg good.img 0x02030001 1
  $ printf 'set board 1\ntarvo download -o good.img\ntarvo getinit\nquit\n' | kvd | sed -n '/^cmd>/,$p' | grep -E 'Done|Version|Type'
  cmd> cmd> Done.
    Firmware Version: 2030001
       Firmware Type: Operational
  $ grep -o '^KVD_SendTarvoCommand(.*) = 0 command=FW_DOWNLOAD' trace
  KVD_SendTarvoCommand(board=1, cmd_len=156, rsp_len=4) = 0 command=FW_DOWNLOAD
  $ grep 'command=FW_DOWNLOAD' trace | sed 's/.* in=\(........................\).*/\1/'
  020000009000000001000000
  $ [ "$(grep 'command=FW_DOWNLOAD' trace | sed 's/.* in=\([0-9a-f]*\).*/\1/' | cut -c25-)" = "$(od -An -tx1 -v good.img | tr -d ' \n')" ] && echo image sent as read
  image sent as read

The option letter in any case; -d installs a diagnostic image.

  $ mkimg diag.img 0x02030002 2
  $ printf 'set board 1\ntarvo download -D diag.img\ntarvo getinit\nquit\n' | kvd | sed -n '/^cmd>/,$p' | grep -E 'Done|Version|Type'
  cmd> cmd> Done.
    Firmware Version: 2030002
       Firmware Type: Diagnostic
  $ kvd -b 1 -c 'tarvo download -O good.img'
  Done.
  

Bytes beyond the header's file length are sent too.

  $ mkimg trailing.img 0x02030003 1 trailing
  $ kvd -b 1 -c 'tarvo download -o trailing.img'
  Done.
  
  $ grep 'command=FW_DOWNLOAD' trace | tail -1 | grep -o 'cmd_len=[0-9]*'; grep 'command=FW_DOWNLOAD' trace | tail -1 | sed 's/.* in=\(........................\).*/\1/'
  cmd_len=164
  020000009000000001000000

Images the shell refuses: the two diagnostic lines, nothing sent.

  $ : > trace
  $ for flaw in badsum badver oddlen outside long headless; do mkimg $flaw.img 0x02030004 1 $flaw; kvd -b 1 -c "tarvo download -o $flaw.img"; done
  Version 33751044 file_len 144 image_len 96 chksum_offset 140 checksum 0xf1090820
  padded 0 type 1 version 33751044 checksum 0xf1090820 &  0xf1090920
  Version 33751044 file_len 144 image_len 96 chksum_offset 140 checksum 0xf1090920
  padded 0 type 1 version 33751045 checksum 0xf1090920 &  0xf1090920
  Version 33751044 file_len 142 image_len 96 chksum_offset 140 checksum 0xf109093e
  padded 0 type 1 version 33751044 checksum 0xf109093e &  0x243a6066
  Version 33751044 file_len 144 image_len 96 chksum_offset 148 checksum 0x0
  padded 0 type 0 version 0 checksum 0x0 &  0x0
  Version 33751044 file_len 208 image_len 96 chksum_offset 140 checksum 0x0
  padded 0 type 0 version 0 checksum 0x0 &  0x0
  Version 33751044 file_len 144 image_len 96 chksum_offset 0 checksum 0x0
  padded 0 type 0 version 0 checksum 0x0 &  0x0
  $ : > empty.img
  $ kvd -b 1 -c 'tarvo download -o empty.img'
  Version 0 file_len 0 image_len 0 chksum_offset 0 checksum 0x0
  padded 0 type 0 version 0 checksum 0x0 &  0x0
  $ calls
  0

Images the ASIC refuses; the running version stays.

  $ mkimg short.img 0x0 1 short
  $ kvd -b 1 -c 'tarvo download -o short.img'
  Tarvo command error. code=4.
  $ printf 'set board 1\ntarvo download -o diag.img\ntarvo getinit\ntarvo logdata 0\nquit\n' | kvd | grep -E 'code=|Version|fw:'
  cmd> cmd> Tarvo command error. code=4.
    Firmware Version: 2010400
  3: fw: image refused, image type mismatch

At a terminal the progress line on standard error ends before the ASIC's
refusal prints, so the two do not share a line.

  $ script -qec "kvd -b 1 -c 'tarvo download -o diag.img'" /dev/null < /dev/null | tr -d '\r'
  ASIC firmware download: 0 of 144 bytes (0%)
  Tarvo command error. code=4.

Files that cannot be opened or read, and the usage: nothing is sent.

  $ : > trace
  $ kvd -b 1 -c 'tarvo download -o missing.img'
  Error: Unable to open <missing.img>.
  $ kvd -b 1 -c 'tarvo download -o .'
  Error: Unable to read <.>.
  $ kvd -b 1 -c 'tarvo download -x good.img'
  Usage: tarvo download -o <filename>
         tarvo download -d <filename>
  
              -o       - Tarvo operational firmware image.
              -d       - Tarvo diagnostic firmware image.
              filename - Tarvo firmware image file.
  
  $ kvd -b 1 -c 'tarvo download good.img' | head -1
  Usage: tarvo download -o <filename>
  $ calls
  0
  $ KVD_SIM_FAULT=KVD_SendTarvoCommand=99 kvd -b 1 -c 'tarvo download -o good.img'
  Tarvo command error. Timeout.
  $ kvd -b 0 -c 'tarvo download -o good.img'
  Tarvo command error. Invalid adapter.
