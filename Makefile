# kvd: build, run and test. `make run` and `make test` do all set-up on a
# fresh Debian machine (packages are installed when run as root).

BUILD      ?= build
ASAN_BUILD ?= build-asan
TSAN_BUILD ?= build-tsan
FUZZ_BUILD ?= build-fuzz
FUZZ_TIME  ?= 60
FUZZ_RUNS  ?= -1
JOBS       ?= $(shell nproc 2>/dev/null || echo 2)
# make install: PREFIX and DESTDIR as usual; make uninstall (with the same
# DESTDIR) removes what the last install from $(BUILD) wrote, as CMake listed it.
PREFIX           ?= /usr/local
DESTDIR          ?=
INSTALL_MANIFEST ?= $(BUILD)/install_manifest.txt

# Debian packages the build and the tests need.
DEB_PACKAGES := cmake make g++ pkg-config nlohmann-json3-dev libgtest-dev googletest \
                python3-cram libhbaapi-dev libbenchmark-dev clang-format libedit-dev groff-base

# Every C and C++ source of the project, for the formatting check.
FORMAT_FILES = $(shell find app sim include tests bench tools -name '*.c' -o -name '*.cpp' -o -name '*.h' -o -name '*.hpp')

.PHONY: all deps build run test test-asan asan test-tsan tsan bench clean format format-check install uninstall \
        fuzz fuzz-build fuzz-deps

all: build

deps:
	@missing=$$(for p in $(DEB_PACKAGES); do \
	    dpkg-query -W -f='$${Status}\n' $$p 2>/dev/null | grep -q 'install ok installed' || echo $$p; done); \
	if [ -n "$$missing" ]; then \
	    if [ "$$(id -u)" = 0 ]; then \
	        echo "Installing:" $$missing; \
	        apt-get update -qq && DEBIAN_FRONTEND=noninteractive apt-get install -y -qq $$missing; \
	    else \
	        echo "Missing packages (run 'make deps' as root):" $$missing >&2; exit 1; \
	    fi; \
	fi

$(BUILD)/CMakeCache.txt:
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo

build: deps $(BUILD)/CMakeCache.txt
	cmake --build $(BUILD) -j$(JOBS)

# quit, bye and exit leave kvd with status 1: that is a normal end here. The
# build's own output is shown only when the build fails.
run: deps
	@log=$$(mktemp); \
	if { [ -f $(BUILD)/CMakeCache.txt ] || cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo; } >$$log 2>&1 && \
	   cmake --build $(BUILD) -j$(JOBS) >>$$log 2>&1; then rm -f $$log; \
	else cat $$log >&2; rm -f $$log; exit 1; fi
	@$(BUILD)/app/kvd; status=$$?; [ $$status -le 1 ]

install: build
	DESTDIR="$(DESTDIR)" cmake --install $(BUILD) --prefix "$(PREFIX)"

# Removes each file listed, then the folders of our own (.../kvd) left empty.
uninstall:
	@[ -f "$(INSTALL_MANIFEST)" ] || { echo "uninstall: no $(INSTALL_MANIFEST): nothing installed from $(BUILD)" >&2; exit 1; }
	@while IFS= read -r f || [ -n "$$f" ]; do rm -fv "$(DESTDIR)$$f"; done < "$(INSTALL_MANIFEST)"
	@sed 's|/[^/]*$$||' "$(INSTALL_MANIFEST)" | sort -u | while IFS= read -r d; do \
	    case "$$d" in */kvd) rmdir "$(DESTDIR)$$d" 2>/dev/null || true;; esac; done
	@rm -f "$(INSTALL_MANIFEST)"

$(ASAN_BUILD)/CMakeCache.txt:
	cmake -S . -B $(ASAN_BUILD) -DCMAKE_BUILD_TYPE=Debug -DKVD_SANITIZE=ON

asan: deps $(ASAN_BUILD)/CMakeCache.txt
	cmake --build $(ASAN_BUILD) -j$(JOBS)

format-check: deps
	clang-format --dry-run -Werror $(FORMAT_FILES)

format:
	clang-format -i $(FORMAT_FILES)

test: format-check build
	ctest --test-dir $(BUILD) --output-on-failure -j$(JOBS)
	$(MAKE) --no-print-directory test-asan
	$(MAKE) --no-print-directory test-tsan

test-asan: asan
	ctest --test-dir $(ASAN_BUILD) --output-on-failure -j$(JOBS)

$(TSAN_BUILD)/CMakeCache.txt:
	cmake -S . -B $(TSAN_BUILD) -DCMAKE_BUILD_TYPE=Debug -DKVD_TSAN=ON

tsan: deps $(TSAN_BUILD)/CMakeCache.txt
	cmake --build $(TSAN_BUILD) -j$(JOBS)

# The event thread against the shell: the event, loopback/reset and release
# tests under ThreadSanitizer.
TSAN_TESTS := 'cram_events|cram_sd_events|ShellSd\.|cram_diag|cram_signals|Release\.|Events\.|EventStress\.|SimEvents\.'
test-tsan: tsan
	TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1 \
	ctest --test-dir $(TSAN_BUILD) --output-on-failure -j$(JOBS) -R $(TSAN_TESTS)

# libFuzzer targets (clang): each runs FUZZ_TIME seconds (or FUZZ_RUNS
# inputs) in turn, from its seeds in tests/fuzz/corpus/<target>/; what it
# finds new goes to $(FUZZ_BUILD)/corpus/<target>/, crashes to
# $(FUZZ_BUILD)/artifacts/. FUZZ_TARGETS narrows the set. The shell's format
# strings are checked when it is compiled; leaving the sanitizer's run-time
# parse of every printf format out makes the printing targets half again as
# fast.
FUZZ_TARGETS ?= $(patsubst tests/fuzz/fuzz_%.cpp,%,$(wildcard tests/fuzz/fuzz_*.cpp))

# clang and its sanitizer/fuzzer runtimes, installed like the rest.
FUZZ_PACKAGES := clang libclang-rt-dev

fuzz-deps:
	@$(MAKE) --no-print-directory deps DEB_PACKAGES="$(DEB_PACKAGES) $(FUZZ_PACKAGES)"

$(FUZZ_BUILD)/CMakeCache.txt: | fuzz-deps
	CC=clang CXX=clang++ cmake -S . -B $(FUZZ_BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKVD_FUZZ=ON

fuzz-build: fuzz-deps $(FUZZ_BUILD)/CMakeCache.txt
	cmake --build $(FUZZ_BUILD) -j$(JOBS) --target fuzz_targets

fuzz: fuzz-build
	@mkdir -p $(FUZZ_BUILD)/artifacts
	@for t in $(FUZZ_TARGETS); do \
	    mkdir -p $(FUZZ_BUILD)/corpus/$$t; \
	    echo "== fuzz_$$t"; \
	    ASAN_OPTIONS=check_printf=0 $(FUZZ_BUILD)/tests/fuzz/fuzz_$$t -max_total_time=$(FUZZ_TIME) -runs=$(FUZZ_RUNS) \
	        -timeout=10 -print_final_stats=1 -artifact_prefix=$(FUZZ_BUILD)/artifacts/$$t- \
	        $(FUZZ_BUILD)/corpus/$$t tests/fuzz/corpus/$$t || exit 1; \
	done

bench: build
	@for b in $(BUILD)/bench/bench_*; do [ -x "$$b" ] && "$$b"; done

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(TSAN_BUILD) $(FUZZ_BUILD)
