# Thin front of the CMake presets. Every target installs what it needs first (scripts/setup).
SHELL := /bin/bash
JOBS ?= $(shell nproc)
PORT ?= 5988
SCENARIO ?= simulator/scenarios/default.json
SWITCH_SOCKET ?= build/release/switch.sock
FUZZ_SECONDS ?= 60
PYTHON := .venv/bin/python3

.PHONY: help run demo test test-asan test-tsan test-ppc test-clang-tsa test-install package test-package fuzz bench format lint tidy docs setup clean

help:
	@sed -n 's/^## //p' Makefile

setup:
	@scripts/setup

## make run        build the agent and start it on the default scenario (PORT=5988, SCENARIO=file, SWITCH_SOCKET=path)
run: setup
	@scripts/build release bundle
	@scripts/show-how-to-query $(PORT) $(SWITCH_SOCKET)
	@exec build/release/bin/cimd --config "" --port $(PORT) --scenario $(SCENARIO) --switch-socket $(SWITCH_SOCKET)

## make demo       start the agent on a free port, walk it with a real client, stop
demo: setup
	@scripts/build release bundle
	@$(PYTHON) scripts/demo.py build/release

## make test       formatting check, build, unit tests, end-to-end tests
test: setup lint
	@scripts/build dev
	ctest --preset dev -j$(JOBS)
	$(PYTHON) -m pytest -q tests --build-dir build/dev

## make test-asan  the same under the address and undefined-behaviour sanitizers
test-asan: setup
	@scripts/build asan
	ctest --preset asan -j$(JOBS)
	$(PYTHON) -m pytest -q tests/e2e tests/wire --build-dir build/asan

## make test-tsan  the same under the thread sanitizer
test-tsan: setup
	@scripts/build tsan
	ctest --preset tsan -j$(JOBS)
	TSAN_OPTIONS=halt_on_error=1 $(PYTHON) -m pytest -q tests/e2e tests/wire --build-dir build/tsan

## make test-ppc   unit tests as 32-bit big-endian PowerPC programs under qemu
test-ppc: setup
	@scripts/build ppc
	ctest --preset ppc -j$(JOBS)

## make test-clang-tsa  compile with clang's lock analysis
test-clang-tsa: setup
	@scripts/build clang-tsa

## make test-install    install the toolkit, then build the module against that installation
test-install: setup
	@scripts/check-installed-toolkit

## make package    the Debian packages, in build/packages; prints their sizes
package: setup
	@scripts/build release bundle
	@scripts/packages

## make test-package    install them in a bare Debian 12, ask the agent, remove them; says so where that is not possible
test-package: package
	@$(PYTHON) scripts/check-packages || [ $$? -eq 77 ]

## make fuzz       fuzz every reader of foreign input for a while (FUZZ_SECONDS each, 60)
fuzz: setup
	@scripts/build fuzz fuzz
	@scripts/fuzz build/fuzz $(FUZZ_SECONDS)

## make bench      performance figures of an optimised build, module and agent (AGAINST=other build: the two agents compared)
bench: setup
	@scripts/build release benches
	@scripts/bench build/release $(if $(AGAINST),--against $(AGAINST))

## make format     format the sources in place
format: setup
	@scripts/format

## make lint       formatting, names of files, comments, includes, docs/classes.md
lint: setup
	@scripts/lint

## make tidy       static analysis of the sources
tidy: setup
	@scripts/build dev
	@scripts/tidy build/dev

## make docs       write docs/classes.md from the provider list, the MOF and the provider units
docs: setup
	@$(PYTHON) scripts/classes-doc

clean:
	rm -rf build
