# kvd: build, run and test. `make run` and `make test` do all set-up on a
# fresh Debian machine (packages are installed when run as root).

BUILD      ?= build
ASAN_BUILD ?= build-asan
TSAN_BUILD ?= build-tsan
JOBS       ?= $(shell nproc 2>/dev/null || echo 2)

# Debian packages the build and the tests need.
DEB_PACKAGES := cmake make g++ pkg-config nlohmann-json3-dev libgtest-dev googletest \
                python3-cram libhbaapi-dev libbenchmark-dev clang-format

# Every C and C++ source of the project, for the formatting check.
FORMAT_FILES = $(shell find app sim include tests bench -name '*.c' -o -name '*.cpp' -o -name '*.h' -o -name '*.hpp')

.PHONY: all deps build run test test-asan asan test-tsan tsan bench clean format format-check

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

# quit, bye and exit leave kvd with status 1: that is a normal end here.
run: build
	@$(BUILD)/app/kvd; status=$$?; [ $$status -le 1 ]

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

bench: build
	@for b in $(BUILD)/bench/bench_*; do [ -x "$$b" ] && "$$b"; done

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(TSAN_BUILD)
