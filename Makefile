# Quillmere: `make run` opens the player with the demo dictation,
# `make test` runs every test. Both install what is missing first.

BUILD ?= build
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: all deps configure build run test bench fuzz clean

all: build

deps:
	@./scripts/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD) -G "Unix Makefiles" -DCMAKE_BUILD_TYPE=RelWithDebInfo > /dev/null

build: configure
	@cmake --build $(BUILD) -j$(JOBS)

run: build
	@./scripts/run.sh $(BUILD)

# The real-time tests against libmpv can miss a report on a busy machine;
# a test that fails three times running is a failure.
test: build
	@cd $(BUILD) && ctest --output-on-failure --repeat until-pass:3 -j$(JOBS)

bench: build
	@./scripts/bench.sh $(BUILD)

# Every reader of outside data under libFuzzer, FUZZ_SECONDS each (default 60).
fuzz: deps
	@./scripts/fuzz.sh build-fuzz

clean:
	rm -rf $(BUILD)

# For one user, no root needed: the program folder goes to
# $(PREFIX)/lib/quillmere, the `quillmere` command to $(PREFIX)/bin.
PREFIX ?= $(HOME)/.local
.PHONY: install uninstall

install: build
	@./scripts/install.sh $(BUILD) $(PREFIX)

uninstall:
	@./scripts/uninstall.sh $(PREFIX)
