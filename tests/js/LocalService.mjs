// The local service on a database of its own in a temporary folder. It ends with the test program,
// however that ends.
import { spawn } from 'node:child_process';
import { chmodSync, existsSync, mkdtempSync, readFileSync, readdirSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { setTimeout as pause } from 'node:timers/promises';

export class LocalService {
    static async start(...options) {
        const service = new LocalService();
        service.folder = mkdtempSync(join(tmpdir(), 'amorvelle-js-'));
        // The database does not run as root; its user has to pass through.
        chmodSync(service.folder, 0o755);
        const ready = join(service.folder, 'ready');
        service.output = '';
        service.process = spawn('setpriv', ['--pdeathsig', 'TERM', process.env.AMORVELLE_SERVICE,
            '--data', service.data(), '--ready-file', ready, ...options]);
        for (const stream of [service.process.stdout, service.process.stderr])
            stream.on('data', (text) => { service.output += text; });
        service.end = new Promise((done) => service.process.once('exit', done));
        while (!existsSync(ready)) {
            if (service.process.exitCode !== null)
                throw new Error(`the local service does not start: ${service.output}`);
            await pause(20);
        }
        for (const line of readFileSync(ready, 'utf8').trim().split('\n')) {
            const [key, value] = line.split('=');
            service[key === 'SUPABASE_URL' ? 'url' : 'publishable'] = value;
        }
        service.secret = JSON.parse(readFileSync(join(service.data(), 'keys.json'), 'utf8')).secret_key;
        return service;
    }

    async stop() {
        this.process.kill('SIGTERM');
        const code = await this.end;
        rmSync(this.folder, { recursive: true, force: true });
        return code;
    }

    data() {
        return join(this.folder, 'data');
    }

    /** The mails sent so far, the oldest first: whom to, and the token that the link carries. */
    mails() {
        const outbox = join(this.data(), 'outbox');
        if (!existsSync(outbox))
            return [];
        return readdirSync(outbox).filter((name) => name.endsWith('.eml')).sort().map((name) => {
            const text = readFileSync(join(outbox, name), 'utf8');
            return {
                to: /^To: (.*)$/m.exec(text)[1],
                link: /^http\S+$/m.exec(text)[0],
                type: /[?&]type=([a-z_]+)/.exec(text)[1],
                token: /[?&]token=([0-9a-f]+)/.exec(text)[1],
            };
        });
    }
}
