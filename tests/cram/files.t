Host files the shell reads and writes, when they are not what they should
be: each gets its own message, nothing is read or written past a buffer,
and no link or FIFO at a name is followed or waited on. Board 1 of the
default fleet has the ASIC, board 2 the object store.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ calls() { grep -c "^$1(" trace || :; }
  $ mkdir dir; mkfifo fifo; truncate -s 5G huge; printf 'ab' > short

Firmware images: a directory, a FIFO (refused, not waited on), a file
larger than any image, one shorter than the image header. Nothing reaches
the ASIC.

  $ kvd -b 1 -c 'tarvo download -o dir'
  Error: Unable to read <dir>.
  $ kvd -b 1 -c 'tarvo download -o fifo'
  Error: Unable to read <fifo>.
  $ kvd -b 1 -c 'tarvo download -o huge'
  Unable to allocate command buffer memory.
  $ kvd -b 1 -c 'tarvo download -o short'
  Version 0 file_len 0 image_len 0 chksum_offset 0 checksum 0x0
  padded 0 type 0 version 0 checksum 0x0 &  0x0
  $ calls KVD_SendTarvoCommand
  0

Object downloads: a directory, a FIFO, a file too large for 32-bit object
offsets. Nothing is sent.

  $ kvd -b 2 -c 'sli4iov write dir /prg/x.grp 1 64 1' | tail -1
  Stat or size error with file: dir size 0
  $ kvd -b 2 -c 'sli4iov write fifo /prg/x.grp 1 64 1' | tail -1
  Stat or size error with file: fifo size 0
  $ kvd -b 2 -c 'sli4iov write huge /prg/x.grp 1 64 1' | tail -1
  Stat or size error with file: huge size 1073741824
  $ calls KVD_IssueMboxWithRetryV2
  0

Object reads into a directory, a FIFO without a reader, a dangling link
(whose target is not created): refused before the adapter is asked.

  $ ln -s nowhere dangling
  $ for f in dir fifo dangling; do kvd -b 2 -c "sli4iov read $f /prg/wol.prg 1 64" | tail -1; done
  Cannot create file: dir
  Cannot create file: fifo
  Cannot create file: dangling
  $ ls nowhere
  ls: cannot access 'nowhere': No such file or directory
  [2]
  $ calls KVD_IssueMboxWithRetryV2
  0
