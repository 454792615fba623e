#!/bin/sh
# The box's run script in power-cut runs: keeps the box serving until the
# host cuts its power; powers off by itself after 15 minutes at the most.
mkdir -p /tmp/sim
echo "powercut: serving"
sleep 900
