#!/bin/sh
# SPDX-License-Identifier: MIT
#
# What `cmake --install --strip` calls: as plain strip, and without the notes of the compiler that
# Debian's packages do not carry either.
exec strip --remove-section=.comment --remove-section=.note "$@"
