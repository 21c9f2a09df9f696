// What hosted projects answer, played to the local service: service/contract/ holds the exchanges,
// each with the public page or test that it was taken from.
import assert from 'node:assert/strict';
import { readFileSync, readdirSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { play } from './Exchange.mjs';
import { LocalService } from './LocalService.mjs';

const folder = process.env.AMORVELLE_CONTRACT;
const files = readdirSync(folder).filter((name) => name.endsWith('.json')).sort();
assert.ok(files.length > 0, `no exchanges in ${folder}`);

for (const file of files) {
    const { options = [], exchanges } = JSON.parse(readFileSync(join(folder, file), 'utf8'));
    test(file, async (all) => {
        const service = await LocalService.start(...options);
        const known = { publishable: service.publishable, secret: service.secret };
        try {
            for (const exchange of exchanges) {
                await all.test(exchange.name, async () => {
                    assert.match(exchange.source, /^https:\/\//, 'an exchange names its source');
                    await play(service, exchange, known);
                });
            }
        } finally {
            assert.equal(await service.stop(), 0, service.output);
        }
    });
}
